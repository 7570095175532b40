#!/usr/bin/env python3
"""check-editors.py TOVA_FW: whether what stands here fits the tool.

The statements are those of the tables in docs/definition-language.md, each of
which the tool has to know; the patterns are tried on what lint prints.
"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile

here = pathlib.Path(__file__).resolve().parent
tool = str(pathlib.Path(sys.argv[1]).resolve())


def keys_of_papers():
    """The keys in the first column of the tables, by the papers' heading."""
    keys = set()
    for line in (here.parent / "docs/definition-language.md").open():
        if line.startswith("## Traps"):
            break
        cell = line.split("|")[1] if line.startswith("| `") else ""
        keys.update(re.findall(r"`([a-z_]{3,})(?=[ `])", cell))
    return keys - {"da"} | {"include", "define"}


def lint(text, *options):
    """What lint prints of a definition, and its findings."""
    with tempfile.TemporaryDirectory() as folder:
        name = pathlib.Path(folder, "a b.def")
        name.write_bytes(text.encode())
        run = [tool, "lint", name.name, *options]
        printed = subprocess.run(run, cwd=folder, capture_output=True,
                                 text=True, check=False).stdout
        found = subprocess.run([*run, "--json"], cwd=folder,
                               capture_output=True, check=False).stdout
    return printed, json.loads(found)["findings"]


keys = keys_of_papers()
assert len(keys) == 36, sorted(keys)
for key in keys - {"include", "define"}:
    # Behind a statement of the image, what belongs elsewhere is told so.
    printed, _ = lint(f"{key}\n")
    assert f"[{key}] Unknown parameter" not in printed or \
        f"'{key}' belongs in" in printed, printed

grammar = json.loads(
    (here / "vscode/syntaxes/tova-definition.tmLanguage.json").read_text())
first_words = [re.compile(p["match"]) for p in grammar["patterns"]]
vim = (here / "vim/syntax/tovadef.vim").read_text()
vim_words = set(re.findall(r"[a-z_]+",
                           " ".join(re.findall(r"/\^\\s\*\\\((.*?)\\\)\\>/",
                                               vim))))
for key in keys:
    line = f"  {key} text .a"
    assert any((m := p.match(line)) and m.lastindex and m.group(1) == key
               for p in first_words), f"TextMate: {key}"
    assert key in vim_words, f"Vim: {key}"
assert vim_words == keys, vim_words ^ keys

# A line for each finding and no other, with its place and rule.
matcher = json.loads((here / "vscode/package.json").read_text())
pattern = matcher["contributes"]["problemMatchers"][0]["pattern"]
regexp = re.compile(pattern["regexp"])
wrong = ("binary_name LONGERNAME x\nmax_data 0\nmax_data 1\nmodule m\n"
         "type 0x1b\ngroup text\n section .a [b]\n setcion .b\n")
printed, findings = lint(wrong)
matches = [m for line in printed.splitlines() if (m := regexp.match(line))]
got = [{"file": m[pattern["file"]], "line": int(m[pattern["line"]]),
        "column": int(m[pattern["column"]]), "level": m[pattern["severity"]],
        "text": m[pattern["message"]], "rule": m[pattern["code"]]}
       for m in matches]
for finding in findings:
    del finding["notes"]
assert len(got) >= 6 and got == findings, (got, findings)

# Vim's %f:%l:%c: with the first letter of the level as %t.
compiler = (here / "vim/compiler/tova.vim").read_text()
formats = re.search(r"errorformat=(.*)", compiler)[1].replace("\\ ", " ")
tried = [re.compile(re.escape(f).replace("%f", "(.+?)").replace("%l", r"(\d+)")
                    .replace("%c", r"(\d+)").replace("%t", "([ewn])")
                    .replace("%m", "(.+)") + "$")
         for f in formats.split(",")]
for line in printed.splitlines():
    assert any(f.match(line) for f in tried), line
print(f"{len(keys)} statements and {len(got)} findings fit the editors")
