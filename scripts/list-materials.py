#!/usr/bin/env python3
"""list-materials.py TAG COMMIT SECONDS FILE...

Prints the bill of materials of a release as SPDX 2.3: the files with their
SHA-256, and the packages of this system that were compiled or linked into the
programs, with the versions that dpkg knows. SECONDS is the time of the release.
"""
import datetime
import hashlib
import json
import os
import subprocess
import sys

# What of each package gets into a program: all of it is linked or compiled in.
LINUX = {
    "libc6-dev": "both programs for Linux",
    "libstdc++-12-dev": "both programs for Linux",
    "libgcc-12-dev": "both programs for Linux",
    "libssl-dev": "tova_fw for Linux: libcrypto",
    "libelf-dev": "tova_fw for Linux, from the command tables on",
    "zlib1g-dev": "tova_fw for Linux, from the command tables on",
}
WINDOWS = {
    "mingw-w64-x86-64-dev": "both programs for Windows",
    "gcc-mingw-w64-x86-64-posix-runtime": "both programs for Windows",
}
HEADERS = {
    "libcli11-dev": "tova_fw: headers alone",
    "nlohmann-json3-dev": "tova_fw: headers alone",
}
COMPILERS = {
    "g++-12": "compiles the programs for Linux",
    "g++-mingw-w64-x86-64-posix": "compiles the programs for Windows",
    "cmake": "configures the build",
}


def installed(package):
    """Its version, or None if it isn't installed."""
    answer = subprocess.run(
        ["dpkg-query", "-W", "-f=${Status}|${Version}", package],
        capture_output=True, text=True, check=False)
    status, _, version = answer.stdout.partition("|")
    return version if status == "install ok installed" else None


def spdx_id(kind, name):
    safe = "".join(c if c.isalnum() or c in ".-" else "-" for c in name)
    return f"SPDXRef-{kind}-{safe}"


def package(name, version, comment):
    return {
        "SPDXID": spdx_id("Package", name),
        "name": name,
        "versionInfo": version,
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": "NOASSERTION",
        "licenseDeclared": "NOASSERTION",
        "copyrightText": "NOASSERTION",
        "comment": comment,
    }


def file_entry(path):
    with open(path, "rb") as file:
        data = file.read()
    return {
        "SPDXID": spdx_id("File", os.path.basename(path)),
        "fileName": "./" + os.path.basename(path),
        "checksums": [
            {"algorithm": "SHA1",
             "checksumValue": hashlib.sha1(data).hexdigest()},
            {"algorithm": "SHA256",
             "checksumValue": hashlib.sha256(data).hexdigest()},
        ],
        "licenseConcluded": "NOASSERTION",
        "copyrightText": "NOASSERTION",
    }


def main():
    tag, commit, seconds, *paths = sys.argv[1:]
    created = datetime.datetime.fromtimestamp(int(seconds),
                                              datetime.timezone.utc)
    tool = package("tova-fw", tag, "Both programs. The owner has not chosen a "
                   "licence yet.")
    tool["licenseDeclared"] = "NONE"
    tool["sourceInfo"] = f"git commit {commit}, tag {tag}"
    packages, relations = [tool], []

    def relate(one, relation, other):
        relations.append({"spdxElementId": one, "relationshipType": relation,
                          "relatedSpdxElement": other})

    relate("SPDXRef-DOCUMENT", "DESCRIBES", tool["SPDXID"])
    for names, relation in ((LINUX, "STATIC_LINK"), (WINDOWS, "STATIC_LINK"),
                            (HEADERS, "CONTAINS"), (COMPILERS, None)):
        for name, comment in names.items():
            version = installed(name)
            if version is None:
                continue
            packages.append(package(name, version, comment))
            other = packages[-1]["SPDXID"]
            if relation:
                relate(tool["SPDXID"], relation, other)
            else:
                relate(other, "BUILD_TOOL_OF", tool["SPDXID"])
    files = [file_entry(path) for path in paths]
    for entry in files:
        relate(entry["SPDXID"], "GENERATED_FROM", tool["SPDXID"])
    json.dump({
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"tova-fw-{tag}",
        "documentNamespace": f"https://spdx.org/spdxdocs/tova-fw-{commit}",
        "creationInfo": {
            "created": created.strftime("%Y-%m-%dT%H:%M:%SZ"),
            "creators": ["Tool: list-materials.py"],
        },
        "packages": packages,
        "files": files,
        "relationships": relations,
    }, sys.stdout, indent=2)
    print()


main()
