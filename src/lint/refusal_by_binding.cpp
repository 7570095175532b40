// What the builder refuses once it has the linker's output: its message, at the
// statement that it is about. The messages name modules, sections and symbols,
// and by these names the statements are found.
#include <algorithm>
#include <optional>

#include "lint/refusal_by_writing.h"
#include "lint/rule_functions.h"
#include "lint/statement_forms.h"

namespace tova_fw_builder {

namespace {

using Group = FwOutMap::SectionGroup;

// What stands between two pieces of a text; nothing if they aren't there.
std::optional<std::string> between(std::string_view text, std::string_view head,
                                   std::string_view tail) {
  if (!text.starts_with(head)) return std::nullopt;
  text.remove_prefix(head.size());
  const std::size_t end = tail.empty() ? text.size() : text.find(tail);
  if (end == text.npos) return std::nullopt;
  return std::string(text.substr(0, end));
}

const LintStatement* find_statement(const Linked& linked, std::string_view key,
                                    std::string_view operand) {
  for (const LintStatement& statement : linked.definition->statements) {
    if (statement.key() != key) continue;
    const BlockKind kind = linked.definition->blocks[statement.block].kind;
    if (operand.empty() || name_of(statement, kind) == operand) {
      return &statement;
    }
  }
  return nullptr;
}

const LinkedModule* find_module(const Linked& linked, std::string_view name) {
  const auto found =
      std::ranges::find(linked.modules, name, &LinkedModule::name);
  return found == linked.modules.end() ? nullptr : &*found;
}

std::uint32_t type_of(const FwImageMap::SectionHeader& header) {
  return header.code   ? Group::kText
         : header.data ? Group::kRodata
                       : Group::kBss;
}

std::string_view type_name(std::uint32_t type) {
  return type == Group::kText     ? "text"
         : type == Group::kRodata ? "rodata"
                                  : "bss";
}

bool has_type(const FwImageMap::SectionHeader& header) {
  return header.code || header.data || (header.alloc && !header.contents);
}

void explain_types(const LinkedModule& module, Finding& finding) {
  for (const LinkedGroup& group : module.groups) {
    for (const LinkedSection& section : group.sections) {
      if (!section.header) continue;
      if (has_type(*section.header) && type_of(*section.header) == group.type) {
        continue;
      }
      finding.spot = section.spot;
      finding.text += has_type(*section.header)
                          ? "; " + in_quotes(section.name) +
                                " belongs in group " +
                                std::string(type_name(type_of(*section.header)))
                          : "; " + in_quotes(section.name) +
                                " is neither code nor data nor zeroed memory";
      return;
    }
  }
}

void explain_entries(const LinkedModule& module, bool is_double,
                     Finding& finding) {
  for (const LinkedGroup& group : module.groups) {
    std::vector<Spot> entries;
    if (group.entry != Group::kNoEntry) entries.push_back(group.entry_spot);
    for (const LinkedSection& section : group.sections) {
      if (word_at(*section.statement, 1) == "ep") {
        entries.push_back(section.spot);
      }
    }
    if (is_double && entries.size() > 1) {
      finding.spot = entries[1];
      finding.notes.push_back({entries[0], "the first one"});
      return;
    }
    if (!is_double && group.type == Group::kText && entries.empty()) {
      finding.spot = group.opened->spot();
      finding.text += "; write 'section ep NAME' or 'entry ADDRESS'";
      return;
    }
  }
}

void explain_partial(const LinkedModule& module, Finding& finding) {
  for (const LinkedGroup& group : module.groups) {
    for (const LinkedSection& section : group.sections) {
      const bool is_missing =
          (!section.header && !section.is_optional) ||
          (!section.replacement.empty() && !section.replaced_by);
      if (!is_missing) continue;
      finding.notes.push_back(
          {section.spot,
           in_quotes(section.name) +
               (section.header ? " lacks its replacement" : " isn't there")});
      return;
    }
  }
}

void explain_module(const Linked& linked, const LinkedModule& module,
                    Finding& finding) {
  finding.spot = module.opened->spot();
  const auto says = [&](std::string_view part) {
    return finding.text.find(part) != finding.text.npos;
  };
  if (says("Invalid se")) {  // section type, segment type
    explain_types(module, finding);
  } else if (says("Double entry point")) {
    explain_entries(module, true, finding);
  } else if (says("No entrypoint defined")) {
    explain_entries(module, false, finding);
  } else if (says("Partially mapped")) {
    explain_partial(module, finding);
  } else if (says("UUID last 6 bytes")) {
    const LintBlock* block = nullptr;
    for (const LintBlock& each : linked.definition->blocks) {
      if (each.opened_by == LintBlock::kNone) continue;
      if (&linked.definition->statements[each.opened_by] == module.opened) {
        block = &each;
      }
    }
    for (const std::uint32_t number : block->statements) {
      const LintStatement& statement = linked.definition->statements[number];
      if (statement.key() == "uuid") finding.spot = statement.spot();
    }
  }
}

// The module that a message names; modules may be called alike, so the last
// one for a UUID.
const LinkedModule* named_module(const Linked& linked, std::string_view text) {
  for (const auto& [head, tail] :
       {std::pair{"Connecting ", " failed: "},
        std::pair{"Partially mapped module ", ", section: "},
        std::pair{"Partially mapped module ", ""}}) {
    const auto name = between(text, head, tail);
    if (!name) continue;
    if (const LinkedModule* const module = find_module(linked, *name)) {
      return module;
    }
  }
  const auto name =
      between(text, "UUID last 6 bytes is not unique for module ", "");
  if (!name) return nullptr;
  const LinkedModule* last = nullptr;
  for (const LinkedModule& module : linked.modules) {
    if (module.name == *name) last = &module;
  }
  return last;
}

void explain(const Linked& linked, Finding& finding) {
  const std::string text = finding.text;
  if (const LinkedModule* const module = named_module(linked, text)) {
    explain_module(linked, *module, finding);
    return;
  }
  const std::pair<std::string_view, std::string_view> kStatements[] = {
      {"Section header not found for ", "dyn_mem"},
      {"Required symbol to export not found: ", "export"}};
  for (const auto& [head, key] : kStatements) {
    const auto name = between(text, head, "");
    if (!name) continue;
    if (const auto* const statement = find_statement(linked, key, *name)) {
      finding.spot = statement->words.back().spot;
    }
    return;
  }
  if (text.find("> max_allowed_size") != text.npos) {
    const auto* const statement = find_statement(linked, "max_data", "");
    if (statement != nullptr) finding.spot = statement->spot();
    const std::string name = text.substr(0, text.find(" size "));
    const auto* const section = find_statement(linked, "section", name);
    if (section != nullptr) {
      finding.notes.push_back({section->spot(), "the section"});
    }
  }
}

}  // namespace

void find_refused_binding(const Linked& linked, Findings& out) {
  if (linked.is_unread) {
    out.add(linked.unread_at, *linked.refusal).notes = linked.unread_notes;
  } else if (linked.refusal) {
    explain(linked, out.add({}, *linked.refusal));
  } else {
    // What only the writing finds, which would end with the image half done.
    const WritingRefusal found = refusal_of_writing(*linked.definition->map);
    if (found.text.empty()) return;
    // Of the image as a whole, unless a statement is to blame.
    out.add(linked.spot_of(found.record),
            found.more.empty() ? found.text : found.text + "; " + found.more);
  }
}

}  // namespace tova_fw_builder
