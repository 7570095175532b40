#include "memory_map/map_page.h"

#include "memory_map/json_for_page.h"

namespace tova_fw_builder {

void print_map_page(std::ostream& out, const MapAnswer& answer) {
  out << kPageHead;
  JsonWriter json(out, json_for_page);
  write_cut_map(json, answer, kPageListBytes);
  out << kPageTail;
}

}  // namespace tova_fw_builder
