#!/usr/bin/env python3
"""tables_elfs.py BUILDER TOVA_FW

Links ELFs of many kinds and holds `tova_fw tables` to objdump -h and nm of GNU
binutils: each column that the builder reads, and the image that it makes of
both. Takes every cross assembler and linker of GNU binutils that is installed;
that of the host always is.
"""
import glob
import os
import subprocess
import sys
import tempfile

BUILDER, TOVA_FW = map(os.path.realpath, sys.argv[1:3])
os.environ["LC_ALL"] = "C"
READ = {"CONTENTS", "ALLOC", "LOAD", "READONLY", "CODE", "DATA"}

ONE = """
  .text
  .globl _start
  .type _start, %function
_start: .long 1, 2, 3
local: .long 4
  .weak weak
weak: .long 5
  .section .text.mixer, "ax", %progbits
  .globl mixer
mixer: .long 6
  .section .rodata, "a", %progbits
table: .long 7, 8
twice: .long 9
  .section .rodata.big, "a", %progbits
  .balign 64
  .long 10
  .data
  .globl counter
  .type counter, %object
counter: .long 11
  .weak nowhere
  .bss
  .balign 16
  .globl buffer
buffer: .space 100
  .comm shared, 48, 16
  .section .tdata, "awT", %progbits
  .long 12
  .section .tbss, "awT", %nobits
  .space 8
  .section .heap, "aw", %nobits
  .space 300
  .section .note.x, "a", %note
  .long 4, 4, 1, 0x41414141, 0
  .section .comment, "", %progbits
  .asciz "a remark"
  .section .debug_x, "", %progbits
of_debug: .long 13
  .section .empty, "aw", %progbits
  .globl fixed
  .set fixed, 0x1234
"""
TWO = """
  .text
  .globl second
second: .long 20
local: .long 21
  .section .rodata, "a", %progbits
twice: .long 22
"""
# Each makes other load addresses.
SCRIPTS = {
    "plain": """SECTIONS { . = 0x10000; .text : { *(.text*) }
      .rodata : ALIGN(4096) { *(.rodata*) *(.note.x) }
      .tdata : { *(.tdata) } .tbss : { *(.tbss) }
      .data : ALIGN(4096) { *(.data) } .bss : { *(.bss COMMON .heap) } }""",
    "rom": """MEMORY { ROM : ORIGIN = 0x8000, LENGTH = 1M
               RAM : ORIGIN = 0x80100000, LENGTH = 1M }
      SECTIONS { .text : { *(.text*) } > ROM
      .rodata : { *(.rodata*) *(.note.x) } > ROM
      .tdata : { *(.tdata) } > RAM AT> ROM .tbss : { *(.tbss) } > RAM AT> ROM
      .data : ALIGN(64) { *(.data) } > RAM AT> ROM
      .empty : { *(.empty) } > RAM AT> ROM
      .bss (NOLOAD) : { *(.bss COMMON) } > RAM
      .heap (NOLOAD) : { *(.heap) } > RAM
      OVERLAY 0x80118000 : AT(0x50000) { .o1 { LONG(1) } .o2 { LONG(2) } } }""",
    "phdrs": """PHDRS { a PT_LOAD; b PT_LOAD AT(0x70000); c PT_LOAD; t PT_TLS; }
      SECTIONS { . = 0x10000; .text : { *(.text*) } :a
      .rodata 0x20000 : { *(.rodata*) *(.note.x) } :b
      .tdata 0x30000 : { *(.tdata) } :c :t .tbss : { *(.tbss) } :t
      .data : { *(.data) } :c .bss : { *(.bss COMMON .heap) } :c }""",
    "zero": """PHDRS { a PT_LOAD AT(0); b PT_LOAD AT(0); }
      SECTIONS { . = 0x10000; .text : { *(.text*) } :a
      .data 0x20000 : { *(.data) *(.rodata*) *(.note.x) *(.tdata) } :b
      .bss : { *(.bss COMMON .heap .tbss) } :b }""",
}


def run(*command):
    return subprocess.run(command, capture_output=True, encoding="latin1",
                          check=False)


def sections(text):
    """Name, numbers and flags of each section, as the builder reads them."""
    lines = text.split("\n")
    start = next(i for i, l in enumerate(lines) if l.startswith("Idx")) + 1
    rows = []
    for i in range(start, len(lines) - 1, 2):
        words = lines[i].split()
        flags = READ & set(lines[i + 1].replace(",", " ").split())
        numbers = [int(word, 16) for word in words[-5:-1]]
        rows.append((words[:-5], numbers, words[-1], sorted(flags)))
    return rows


def symbols(text):
    """Address and name of each symbol, by name and then as they stand."""
    rows = [line.split(None, 2) for line in text.split("\n")]
    rows = [row for row in rows if len(row) == 3 and len(row[0]) >= 8]
    return sorted(((row[2], int(row[0], 16)) for row in rows),
                  key=lambda row: row[0])


def write(name, text):
    with open(name, "w", encoding="latin1") as file:
        file.write(text)


def image_of(elf, tables, symbol_list):
    """Status and bytes of a ROM image of the sections that have any."""
    names = [row[0][-1] for row in sections(tables)
             if "LOAD" in row[3] and row[1][0]]
    # A group each: between those of one stand zeros up to the next one.
    write("image.def", "binary_ver 1.8\nmodule all\n" +
          "".join(f"group text\n  section ep {name}\n" for name in names))
    write("tables", tables)
    write("list", symbol_list)
    write("elfs", "".join(os.path.abspath(name) + "\n"
                          for name in (elf, "tables", "list")))
    if os.path.exists("rom.bin"):
        os.remove("rom.bin")
    ended = run(BUILDER, "buildrom", os.path.abspath("image.def"),
                os.getcwd() + "/", "elfs", "rom")
    if not os.path.exists("rom.bin"):
        return ended.stdout.split("Error: ")[-1], b""
    with open("rom.bin", "rb") as file:
        return ended.returncode, file.read(1 << 22)


def check(elf, objdump, nm):
    gnu, gnu_symbols = run(objdump, "-h", elf).stdout, run(nm, elf).stdout
    made = run(TOVA_FW, "tables", elf, "-o", "out", "--name", "elf")
    if made.returncode or made.stderr:
        sys.exit(f"{elf}: {made.returncode} {made.stderr}")
    with open("out/elf.sections", encoding="latin1") as file:
        ours = file.read()
    with open("out/elf.symbols", encoding="latin1") as file:
        our_symbols = file.read()
    for kind, a, b in (("sections", sections(gnu), sections(ours)),
                       ("symbols", symbols(gnu_symbols), symbols(our_symbols))):
        if a != b:
            sys.exit(f"{elf}: other {kind} than GNU binutils:\n  " + "\n  ".join(
                map(str, [x for x in a if x not in b] + ["and"] +
                    [x for x in b if x not in a])))
    image = image_of(elf, gnu, gnu_symbols)
    if image != image_of(elf, ours, our_symbols):
        sys.exit(f"{elf}: another image than by GNU binutils")
    return image[0] == 0 and len(image[1]) > 0


def programs():
    """What stands in front of `as` and so on, for each processor."""
    found = [""]
    for name in glob.glob("/usr/bin/*-objdump"):
        prefix = name[:-len("objdump")]
        tools = [prefix + tool for tool in ("as", "ld", "nm")]
        if "mingw" not in name and all(map(os.path.exists, tools)):
            found.append(prefix)
    return found


def link(prefix):
    """The ELFs of one processor; what its tools refuse is left out."""
    for name, text in (("one", ONE), ("two", TWO)):
        write(name + ".s", text)
        if run(prefix + "as", "-o", name + ".o", name + ".s").returncode:
            return
    runs = {name: ["-T", name + ".ld"] for name in SCRIPTS}
    runs |= {"usual": [], "object": ["-r"], "shared": ["-shared"],
             "relocations": ["-q", "-T", "rom.ld"],
             "stripped": ["-s", "-T", "rom.ld"], "packed": ["-N"]}
    for name, options in runs.items():
        run(prefix + "ld", *options, "-e", "_start", "one.o", "two.o", "-o",
            name + ".elf")
    copies = {"no_debug": ["-g"], "debug_alone": ["--only-keep-debug"],
              "moved": ["--change-section-lma", ".data=0x77770000"],
              "renamed": ["--rename-section", ".rodata=.ro data",
                          "--prefix-symbols=p_"]}
    for name, options in copies.items():
        run(prefix + "objcopy", *options, "rom.elf", name + ".elf")


def main():
    count = images = 0
    with tempfile.TemporaryDirectory() as work:
        os.chdir(work)
        for name, text in SCRIPTS.items():
            write(name + ".ld", text)
        for prefix in programs():
            for old in glob.glob("*.elf"):
                os.remove(old)
            link(prefix)
            for elf in sorted(glob.glob("*.elf")):
                images += check(elf, prefix + "objdump", prefix + "nm")
                count += 1
    if images < 10:
        sys.exit(f"only {images} images were made")
    print(f"The tables of {count} ELFs are those of GNU binutils, "
          f"and so are {images} images")


main()
