#!/usr/bin/env python3
"""secrets_test.py TOVA_FW
Stops each run at its very end and looks through its memory: nowhere may 20 bytes
of a private key stand, of its numbers in either order, or of a text of them.
"""
import ctypes
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile

TRACEME, CONT, SETOPTIONS = 0, 7, 0x4200
TRACE_EXIT, EVENT_EXIT = 0x40, 6
SHORTEST, STEP = 12, 8  # of the pieces that are looked for

system = ctypes.CDLL(None, use_errno=True)
system.ptrace.argtypes = [ctypes.c_long, ctypes.c_long, ctypes.c_void_p,
                          ctypes.c_void_p]
system.ptrace.restype = ctypes.c_long


def memory_of(pid):
    """What the process may have written to."""
    parts = []
    with open(f"/proc/{pid}/maps") as maps, \
            open(f"/proc/{pid}/mem", "rb", 0) as memory:
        for line in maps:
            begin, end = (int(n, 16) for n in line.split()[0].split("-"))
            if line.split()[1].startswith("rw") and end - begin < 1 << 30:
                memory.seek(begin)
                parts.append(memory.read(end - begin))
    return b"".join(parts)


def run_to_end(command, given):
    """The memory of the run at its end, and its status."""
    pipe, writer = os.pipe()
    os.write(writer, given)
    os.close(writer)
    pid = os.fork()
    if pid == 0:
        os.dup2(pipe, 0)
        os.dup2(os.open("log", os.O_WRONLY | os.O_CREAT | os.O_TRUNC), 1)
        os.dup2(1, 2)
        if system.ptrace(TRACEME, 0, None, None) == 0:
            os.execv(command[0], command)
        os._exit(1)
    os.close(pipe)
    if os.WIFEXITED(os.waitpid(pid, 0)[1]):
        print("no process may be traced here: nothing is tested")
        sys.exit(77)
    system.ptrace(SETOPTIONS, pid, None, TRACE_EXIT)
    system.ptrace(CONT, pid, None, None)
    stopped = os.waitpid(pid, 0)[1]
    assert stopped >> 8 == signal.SIGTRAP | EVENT_EXIT << 8, (command, stopped)
    memory = memory_of(pid)
    system.ptrace(CONT, pid, None, None)
    return memory, os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1])


def numbers_of(key):
    """The private numbers of a key, as bytes."""
    text = subprocess.run(["openssl", "pkey", "-in", key, "-noout", "-text"],
                          check=True, capture_output=True, text=True).stdout
    names = "priv|privateExponent|prime.|exponent.|coefficient"
    found = re.findall(rf"^({names}):\n((?: +[0-9a-f:]+\n)+)", text, re.M)
    return [bytes.fromhex(re.sub(r"[\s:]", "", digits)).lstrip(b"\0")
            for _, digits in found]


def pieces_of(secret):
    return {secret[i:i + SHORTEST]
            for i in range(0, len(secret) - SHORTEST + 1, STEP)}


tool = os.path.realpath(sys.argv[1])
keys = pathlib.Path(__file__).resolve().parents[2] / \
    "examples/audio_firmware/keys"
work = tempfile.TemporaryDirectory()
os.chdir(work.name)


def make(*command):
    subprocess.run(command, check=True, capture_output=True)


for folder in "a", "b":
    os.mkdir(folder)
a = pathlib.Path("a")
(a / "pair.key").write_bytes((keys / "test-key-pair.key").read_bytes())
make(tool, "key", "export", "a/pair.key", "-o", "a/rsa.pem")
make("openssl", "rsa", "-in", "a/rsa.pem", "-traditional", "-out", "a/rsa1.pem")
make("openssl", "rsa", "-in", "a/rsa.pem", "-outform", "DER", "-out", "a/rsa.der")
make("openssl", "pkcs8", "-topk8", "-in", "a/rsa.pem", "-passout",
     "pass:open sesame and more", "-out", "locked.pem")
pathlib.Path("passphrase").write_text("open sesame and more\n")
make("openssl", "genpkey", "-algorithm", "ed25519", "-out", "a/ed.pem")
make("openssl", "ecparam", "-genkey", "-name", "prime256v1", "-noout", "-out",
     "a/ec.pem")
for kind in "ed", "ec":
    make("openssl", "pkey", "-in", f"a/{kind}.pem", "-outform", "DER", "-out",
         f"a/{kind}.der")
# Each has another's name in the other folder. A key that is damaged, one far
# inside a file, and one that is called like contents.
names = sorted(os.listdir("a"))
for name, other in zip(names, names[1:] + names[:1], strict=True):
    (pathlib.Path("b") / name).write_bytes((a / other).read_bytes())
pair = (a / "pair.key").read_bytes()
(a / "cut.key").write_bytes(pair[:700])
(a / "inside.bin").write_bytes(bytes(range(256)) * 40 + pair + bytes(5000))
(a / "ec.bin").write_bytes((a / "ec.der").read_bytes())
pathlib.Path("list").write_text(f"production {os.getcwd()}/a/pair.key\n")

wanted = pieces_of(b"open sesame and more")
for key in "a/rsa.pem", "a/ec.pem", "a/ed.pem":
    for number in numbers_of(key):
        for form in number, number[::-1], number.hex().encode():
            wanted |= pieces_of(form)
for key in "a/rsa.pem", "a/rsa1.pem", "a/ec.pem", "a/ed.pem":
    text = (a.parent / key).read_bytes().split(b"\n")[1:-2]
    # The first lines have the modulus, or of a short key what tells its kind.
    for line in text[8:] if len(text) > 8 else [text[0][24:]]:
        wanted |= pieces_of(line)

files = sorted("a/" + name for name in os.listdir("a"))
runs = [
    *(["show", file] for file in files),
    ["show", *files],
    ["show", "--json", "--bytes", *files],
    *(["show", "--as", form, *files] for form in ("binary", "public-key")),
    ["show", "/dev/stdin"],
    *(["diff", "a/" + name, "b/" + name] for name in names),
    ["diff", "a", "b"],
    ["check", "--key-list", "list", "--trust", "a/rsa1.pem", "a"],
    ["where", "1000", "a"],
    ["key", "show", *(file for file in files if file < "a/inside")],
    ["key", "show", "a/rsa.der", "a/rsa.pem", "a/rsa1.pem"],
    ["key", "show", "--passphrase-file", "passphrase", "locked.pem"],
    ["key", "import", "a/rsa1.pem", "-o", "out.key"],
    ["key", "export", "a/pair.key", "-o", "out.pem"],
    ["key", "export", "a/pair.key", "-o", "-"],
]
for run in runs:
    memory, status = run_to_end([tool, *run], pair)
    if status not in (0, 1, 2):
        sys.exit(f"FAILED: {run}: {status}")
    left = [piece for piece in wanted if piece in memory]
    if left:
        sys.exit(f"FAILED: {' '.join(run)} leaves {len(left)} pieces of a "
                 f"private key, such as {left[0]}")
# That the eyes are open: what is no secret is found.
memory, _ = run_to_end([tool, "key", "show", "a/pair.key"], b"")
if b"belong together" not in memory:
    sys.exit("FAILED: the memory that was looked through isn't the run's")
