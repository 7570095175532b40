# The cases of diff_test.sh, which made the files.
import json
import os
import shutil
import struct
import subprocess
import sys

work = os.environ["WORK"]
schema = json.load(open(os.environ["ROOT"] + "/docs/schema/diff.json"))
try:
    import jsonschema
except ImportError:
    jsonschema = None
    print("without python3-jsonschema: the outputs are not validated")
os.chdir(work)


def run(*arguments):
    return subprocess.run([os.environ["COMPANION"], "diff", *arguments],
                          capture_output=True, text=True)


def diff(old, new, *options):
    """What --json tells: the paths that are no echoes, those that are, all."""
    done = run("--json", *options, old, new)
    told = json.loads(done.stdout)
    if jsonschema:
        jsonschema.Draft202012Validator(schema).validate(told)
    assert done.returncode == (0 if told["equal"] else 1), done
    paths = [[c.get("file", "") + ":" + c["path"] if "file" in c else c["path"]
              for c in told["changes"] if c["echo"] == echo]
             for echo in (False, True)]
    return paths[0], paths[1], told


def expect(what, found, expected):
    if found != expected:
        sys.exit(f"FAILED: {what}:\n  expected {expected}\n  found    {found}")


image = open("old/firmware.bin", "rb").read()
HEADER = 0x2000 - 2048
ENTRY = HEADER + 52
MODULES = ["base_fw", "gain", "filter", "mixer", "reverb", "meter"]


def entry(name):
    return ENTRY + 116 * MODULES.index(name)


def patched(*patches):
    """The image with bytes put over it at offsets."""
    data = bytearray(image)
    for offset, put in patches:
        data[offset:offset + len(put)] = put
    return bytes(data)


def flipped(offset):
    return offset, bytes([image[offset] ^ 1])


def word(offset, add=0):
    return offset, struct.pack(
        "<I", struct.unpack_from("<I", image, offset)[0] + add)


reverb = struct.unpack_from("<I", image, entry("reverb") + 88)[0] - 2048
mixer, filter_ = entry("mixer"), entry("filter")
swapped = patched(
    (mixer, image[entry("reverb"):entry("reverb") + 116]),
    (entry("reverb"), image[mixer:mixer + 116]))

# What was done, the new image, what is told, what is an echo.
PLANTED = [
    ("a field", patched(flipped(HEADER + 24)), ["header.feature_mask"], []),
    ("a hash whose contents are the same", patched(flipped(mixer + 32)),
     ["modules[mixer].hash"], []),
    ("contents with their hash",
     patched(flipped(reverb), flipped(entry("reverb") + 40)),
     ["modules[reverb].segments[text].contents"], ["modules[reverb].hash"]),
    ("contents beside another module's hash",
     patched(flipped(reverb), flipped(mixer + 40)),
     ["modules[mixer].hash", "modules[reverb].segments[text].contents"], []),
    ("a segment that nothing moved, and its entry point",
     patched(word(mixer + 84, 0x1000), word(mixer + 64, 0x1000)),
     ["modules[mixer].segments[text].vma"], ["modules[mixer].ep"]),
    ("an entry point alone", patched(word(mixer + 64, 4)),
     ["modules[mixer].ep"], []),
    ("a size that nothing explains", patched(word(HEADER + 16, 1)),
     ["header.preload_page_count"], []),
    ("another name", patched((entry("gain") + 4, b"volume")),
     ["modules[gain].name"], []),
    ("a UUID of zeros: paired by name", patched((filter_ + 12, bytes(16))),
     ["modules[filter].uuid"], []),
    ("a UUID that two have: paired by name",
     patched((filter_ + 12, image[mixer + 12:mixer + 28])),
     ["modules[filter].uuid"], []),
    # Both point at the configuration of the mixer, which stands elsewhere now.
    ("two modules in another order", swapped,
     ["modules[mixer].position"], None),
    ("flags of a segment", patched(flipped(mixer + 80)),
     ["modules[mixer].segments[text].flags"],
     ["modules[mixer].segments[text].flags_value"]),
    ("a hidden byte", patched(flipped(0x5000)), ["padding[1]"], []),
    ("a byte behind a name's end", patched((HEADER + 15, b"x")),
     ["header.name"], []),
    # Padding: in front, behind the tables, between four runs of contents.
    ("a longer file", image + bytes(10), ["padding[5]"], ["length"]),
]
for what, data, told, echoes in PLANTED:
    open("new.bin", "wb").write(data)
    found, found_echoes, _ = diff("old/firmware.bin", "new.bin")
    expect(what, found, told)
    if echoes is not None:
        expect(what + ", echoes", found_echoes, echoes)
    expect(what + ", backwards", len(diff("new.bin", "old/firmware.bin")[0]),
           len(told))

# Equal files say nothing.
same = run("old/firmware.bin", "old/firmware.bin")
expect("equal", (same.returncode, same.stdout, same.stderr), (0, "", ""))

# One function more. The contents begin at 0x8000 - 2048, the mixer's 0x8000
# bytes further, as its address lies above that of the base firmware.
expect("an added function", run("old/firmware.bin", "added/firmware.bin").stdout,
       "modules[mixer].segments[text].contents: 44 bytes differ in 1 of 1 page, "
       "first at 0x100080bc (file 0xf8bc)\n"
       "1 echo is folded away (--all shows it): hash\n")
told, echoes, _ = diff("old/firmware.bin", "grown/firmware.bin")
expect("a page more", told, ["modules[mixer].segments[text].len",
                             "modules[mixer].segments[text].contents"])
expect("what a page more moves", echoes[:3],
       ["modules[mixer].hash", "modules[mixer].segments[rodata].vma",
        "modules[mixer].segments[rodata].file_off"])

# A module less, and one more.
for old, new, side in ("old", "fewer", "old"), ("fewer", "old", "new"):
    told, echoes, whole = diff(old + "/firmware.bin", new + "/firmware.bin")
    expect("modules of " + new, told, ["modules[meter]"])
    expect("their count", "header.num_mods" in echoes, True)
    (meter,) = [c for c in whole["changes"] if c["path"] == "modules[meter]"]
    expect("its kind", meter[side]["kind"], "loadable")

# Folders: the cause in one file has its echo in another.
shutil.copy("old/firmware.bin", "old/released.bin")
told, echoes, whole = diff("old", "added")
expect("folders", told,
       ["firmware.bin:modules[mixer].segments[text].contents"])
expect("folders, echoes", echoes,
       ["firmware.bin:modules[mixer].hash", "firmware.man:digest"])
expect("one side", (whole["only_old"], whole["only_new"]),
       (["released.bin"], []))
told, echoes, _ = diff("old-1.5", "added-1.5")
expect("folders of 1.5", (told, echoes), (
    ["firmware_5A3C0004-7B1E-4C52-9D40-1F2E3D4C5B04.bin:contents"],
    ["firmware.man:modules[mixer].hash"]))
expect("a manifest alone", diff("old-1.5/firmware.man",
                                "added-1.5/firmware.man")[0],
       ["modules[mixer].hash"])

# Dates, and what follows from them alone.
shutil.copytree("old-1.5", "dated")
manifest = bytearray(open("old-1.5/firmware.man", "rb").read())
manifest[20:24] = struct.pack("<I", 0x19991231)
open("dated/firmware.man", "wb").write(manifest)
package = open("old-1.5/firmware.pkg").read().split("\n")
package[0] = "# TOVA FW Image Builder ver Dec 31 1999 23:59:59"
package[3] = "bld 19991231"
open("dated/firmware.pkg", "w").write("\n".join(package))
pair = os.environ["ROOT"] + "/examples/audio_firmware/keys/test-key-pair.key"
for folder in "old-1.5", "dated":
    subprocess.run([os.environ["BUILDER"], "sign", "debug", pair,
                    folder + "/firmware.man", folder + "/firmware.man.signed"],
                   check=True, capture_output=True)
told, echoes, _ = diff("old-1.5", "dated")
expect("dates", told, ["firmware.man:css.date"])
expect("dates, echoes", sorted(echoes),
       ["firmware.man.signed:css.date", "firmware.man.signed:signature",
        "firmware.pkg:build_date", "firmware.pkg:comments[0]"])
expect("no dates", diff("old-1.5", "dated", "--ignore-dates")[2]["changes"], [])
signed = bytearray(open("old-1.5/firmware.man.signed", "rb").read())
signed[400] ^= 1
open("forged", "wb").write(signed)
expect("a signature alone",
       diff("old-1.5/firmware.man.signed", "forged", "--ignore-dates")[0],
       ["signature"])

# Inside of another file; private numbers; formats; troubles.
open("a.img", "wb").write(b"boot" + manifest + b"tail")
manifest[644 + 24] ^= 1
open("b.img", "wb").write(b"boat" + manifest + b"tail")
expect("inside", diff("a.img", "b.img")[0],
       ["embedded[manifest-1.5].header.feature_mask", "contents"])
key = bytearray(open(pair, "rb").read())
secret = key[1000:1008].hex()
key[1000] ^= 1
open("key", "wb").write(key)
text = run("--all", pair, "key").stdout + run("--json", pair, "key").stdout
expect("a private number", ("1 byte differs" in text, secret[2:] in text),
       (True, False))
expect("formats", diff("old/firmware.bin", "old/firmware.man")[0], ["format"])
for arguments in ("none", "old/firmware.bin"), ("old", "key"), ("key",):
    done = run(*arguments)
    expect("trouble", (done.returncode, done.stdout, done.stderr != ""),
           (2, "", True))
expect("a file that is missing", run("none", pair).stderr,
       "tova_fw: none: cannot be read: No such file or directory\n")
