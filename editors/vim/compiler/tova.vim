" :compiler tova, then :make firmware.def
if exists('current_compiler')
  finish
endif
let current_compiler = 'tova'

CompilerSet makeprg=tova_fw\ lint
CompilerSet errorformat=%f:%l:%c:\ %trror:\ %m,%f:%l:%c:\ %tarning:\ %m,%f:%l:%c:\ %tote:\ %m
