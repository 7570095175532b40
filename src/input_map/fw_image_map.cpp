#include "input_map/fw_image_map.h"
