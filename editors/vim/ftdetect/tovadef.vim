" Definitions say what they are for, as other files are called *.def, too.
autocmd BufRead,BufNewFile *.def
      \ if search('^\s*\(binary_ver\|binary_name\|module\|include\)\s', 'nw') |
      \   setfiletype tovadef |
      \ endif
