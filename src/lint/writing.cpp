// The steps of layout/content_writer, in its order: each pad is counted from
// the section that it writes last.
#include "lint/writing.h"

#include "image/records/binary_header.h"
#include "layout/content_writer.h"
#include "layout/records/addon_file.h"
#include "layout/section_group.h"

namespace tova_fw_builder {

namespace {

using Module = FwOutMap::Module;
using Section = FwOutMap::Section;
using Header = FwImageMap::SectionHeader;

class Planner {
 public:
  explicit Planner(const FwOutMap& map) : map_(map) {}

  Writing plan() {
    Writing writing;
    std::uint64_t image = map_.binary_ver == kKelp15 ? 0 : kContentsOffset;
    for (const auto& module : map_.modules) {
      if (module->load_type == Module::kBuiltIn) continue;
      std::uint64_t own_file = 0;
      std::uint64_t& place = has_own_file(map_, *module) ? own_file : image;
      for (const auto& group : module->groups) {
        writing.groups.push_back({module.get(), group.get(), 0, last_, 0});
        write(writing.groups.back(), place, writing.gaps);
      }
    }
    writing.end = image;
    return writing;
  }

 private:
  void write(WrittenGroup& group, std::uint64_t& place,
             std::vector<WrittenGap>& gaps) {
    group.pad = pad_ahead(group);
    if (group.pad != 0) {
      gaps.push_back({last_, group.group->sections.front().get(), group.pad});
    }
    place += group.pad;
    group.offset = place;
    std::uint32_t gap = 0;
    std::uint32_t written = 0;
    const auto& sections = group.group->sections;
    for (std::size_t i = 0; i < sections.size(); ++i) {
      if (!sections[i]->header || !sections[i]->header->contents) continue;
      const Header& header = *sections[i]->header;
      if (gap != 0) gaps.push_back({last_, sections[i].get(), gap});
      place += std::uint64_t{gap} + header.size;
      written += gap + header.size;
      if (i + 1 < sections.size()) {
        gap = load_address(*sections[i + 1]) - header.lma - header.size;
      }
      last_ = sections[i].get();
    }
    if (written == 0) return;
    place += group_pages(*group.group) * kPageSize - written;
  }

  std::uint32_t pad_ahead(const WrittenGroup& group) const {
    if (group.module->module_kind != Module::kAddon || last_ == nullptr ||
        !keeps_addons_in_binary(map_.binary_ver)) {
      return 0;
    }
    return addon_pad(*last_->header, *group.group);
  }

  const FwOutMap& map_;
  const Section* last_ = nullptr;
};

}  // namespace

Writing plan_writing(const FwOutMap& bound) { return Planner(bound).plan(); }

}  // namespace tova_fw_builder
