" Image definitions of tova_fw_builder. Only the first word of a line is a key.
if exists('b:current_syntax')
  finish
endif

syntax case match
setlocal iskeyword=@,48-57,_,.

syntax match tovadefComment /^\s*#.*$/
syntax match tovadefDirective /^\s*\(include\|define\)\>/
syntax match tovadefBlock /^\s*\(module\|group\|pin\)\>/
syntax match tovadefKey /^\s*\(binary_name\|binary_ver\|load_offset\)\>/
syntax match tovadefKey /^\s*\(hw_buf_ba\|hw_buf_size\|max_data\)\>/
syntax match tovadefKey /^\s*\(dyn_mem\|ignore\|memory_class\)\>/
syntax match tovadefKey /^\s*\(uuid\|name\|version_major\|version_minor\)\>/
syntax match tovadefKey /^\s*\(version_hotfix\|version_build\)\>/
syntax match tovadefKey /^\s*\(affinity_mask\|instance_count\|type\)\>/
syntax match tovadefKey /^\s*\(stack_size\|domain_types\|core_type\)\>/
syntax match tovadefKey /^\s*\(mod_cfg\|sched_caps\|export\)\>/
syntax match tovadefKey /^\s*\(section\|entry\|stream_type\)\>/
syntax match tovadefKey /^\s*\(sample_rates\|sample_sizes\)\>/
syntax match tovadefKey /^\s*\(sample_containers\|channel_cfg\)\>/
syntax match tovadefMarker /\(^\s*module\s\+\)\@<=\(o\|b\|ba\|d\|da\|l\)\s/
syntax match tovadefMarker /\(^\s*section\s\+\)\@<=\(ep\|o\)\s/
syntax match tovadefMarker /\(^\s*export\s\+\)\@<=o\s/
syntax match tovadefMarker /\(^\s*group\s\+\)\@<=on_demand\s/
syntax match tovadefMarker /\s\@<=<\s/
syntax match tovadefMacro /\$([^)]*)/

highlight default link tovadefComment Comment
highlight default link tovadefDirective PreProc
highlight default link tovadefBlock Structure
highlight default link tovadefKey Keyword
highlight default link tovadefMarker Special
highlight default link tovadefMacro Identifier

let b:current_syntax = 'tovadef'
