#include "definitions/uuid.h"
