#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""sbom.py: scripts/sbom with packages that are made up, and with documents that lack something."""

import copy
import json
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
SBOM = ROOT / "scripts/sbom"
BUILDINFO = """Format: 1.0
Installed-Build-Depends:
 libboost-dev (= 1.74.0.3),
 libc6 (= 2.36-9+deb12u10),
 libcli11-dev (= 2.1.2+ds-1),
 libsqlite3-0:amd64 (= 3.40.1-2),
 nlohmann-json3-dev (= 3.11.2-2)
Environment:
 LANG="C"
"""
DEPENDS = {
    "vesk-host": "libc6 (>= 2.34), libsqlite3-0 (>= 3.7.15), default-mta | mail-transport-agent, veskctl (= 0.1.0-1)",
    "veskctl": "libc6 (>= 2.34)",
    "tunein-directory": "",
}


def make_packages(folder):
    (folder / "vesk_0.1.0-1_amd64.buildinfo").write_text(BUILDINFO)
    for name, depends in DEPENDS.items():
        control = folder / name / "DEBIAN/control"
        control.parent.mkdir(parents=True)
        control.write_text(f"Package: {name}\nVersion: 0.1.0-1\nArchitecture: all\nMaintainer: Nobody <nobody@localhost>\n"
                           + (f"Depends: {depends}\n" if depends else "") + "Description: made up\n")
        subprocess.run(["dpkg-deb", "--root-owner-group", "--build", folder / name, folder / f"{name}_0.1.0-1_all.deb"], check=True, stdout=subprocess.DEVNULL)


def make(folder, name):
    out = folder / name
    subprocess.run([SBOM, "make", folder / "vesk-0.1.0.tar.gz", folder / "packages", out], check=True)
    return out.read_text()


def complaints(folder, document):
    file = folder / "changed.json"
    file.write_text(json.dumps(document))
    return subprocess.run([SBOM, "check", file], stderr=subprocess.PIPE, text=True).stderr


def without(name):
    def change(document):
        del document[name]
    return change


def element(document, identifier):
    return next(each for each in document["packages"] + document["files"] if each["SPDXID"] == identifier)


#: What is done to a document, and what is said of it.
DAMAGE = {
    "the document has no packages": without("packages"),
    "the document has no relationships": without("relationships"),
    "spdxVersion is 'SPDX-2.1'": lambda document: document.update(spdxVersion="SPDX-2.1"),
    "creationInfo lacks a time or a creator": lambda document: document["creationInfo"].update(created="today"),
    "SPDXRef-Package-veskctl is there twice": lambda document: document["packages"].append(element(document, "SPDXRef-Package-veskctl")),
    "SPDXRef-Package-veskctl has no checksum": lambda document: element(document, "SPDXRef-Package-veskctl").pop("checksums"),
    "SPDXRef-Npm-preact has a checksum that is none": lambda document: element(document, "SPDXRef-Npm-preact")["checksums"][0].update(checksumValue="abc"),
    "SPDXRef-Npm-preact has no license": lambda document: element(document, "SPDXRef-Npm-preact").update(licenseDeclared="NOASSERTION"),
    "SPDXRef-Debian-libc6 has no versionInfo": lambda document: element(document, "SPDXRef-Debian-libc6").pop("versionInfo"),
    "a relationship names SPDXRef-Debian-libc6, which is not there": lambda document: document["packages"].remove(element(document, "SPDXRef-Debian-libc6")),
    "SPDXRef-Debian-libsqlite3-0 is related to nothing": lambda document: document.update(
        relationships=[each for each in document["relationships"] if each["relatedSpdxElement"] != "SPDXRef-Debian-libsqlite3-0"]),
    "which is not there": lambda document: document["files"].pop(),
    "SPDXRef-Sources has files, and no packageVerificationCode": lambda document: element(document, "SPDXRef-Sources").pop("packageVerificationCode"),
}


def main():
    errors = []
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "packages").mkdir()
        (folder / "vesk-0.1.0.tar.gz").write_bytes(b"sources")
        make_packages(folder / "packages")
        text = make(folder, "one.json")
        if text != make(folder, "two.json"):
            errors.append("the same release gives two different documents")
        document = json.loads(text)
        relations = {(each["spdxElementId"].removeprefix("SPDXRef-"), each["relationshipType"], each["relatedSpdxElement"].removeprefix("SPDXRef-"))
                     for each in document["relationships"]}
        wanted = {
            ("DOCUMENT", "DESCRIBES", "Sources"), ("DOCUMENT", "DESCRIBES", "Package-vesk-host"),
            ("Package-veskctl", "GENERATED_FROM", "Sources"), ("Package-vesk-host", "DEPENDS_ON", "Debian-libc6"),
            ("Package-vesk-host", "DEPENDS_ON", "Debian-default-mta"), ("Package-vesk-host", "DEPENDS_ON", "Package-veskctl"),
            ("Package-vesk-host", "STATIC_LINK", "Debian-libboost-dev"), ("Package-tunein-directory", "STATIC_LINK", "Debian-nlohmann-json3-dev"),
            ("Package-vesk-host", "CONTAINS", "Npm-preact"), ("Package-vesk-host", "CONTAINS", "Npm--preact-signals")}
        errors += [f"there is no {each}" for each in wanted - relations]
        versions = {each["SPDXID"]: each["versionInfo"] for each in document["packages"]}
        for identifier, version in {"Debian-libc6": "2.36-9+deb12u10", "Debian-libsqlite3-0": "3.40.1-2", "Debian-default-mta": "NOASSERTION"}.items():
            if versions.get(f"SPDXRef-{identifier}") != version:
                errors.append(f"{identifier} has version {versions.get(f'SPDXRef-{identifier}')}")
        if any(each["name"] in ("typescript", "playwright-core") for each in document["packages"]):
            errors.append("a tool is listed as a part of the page")
        if "./CMakeLists.txt" not in {each["fileName"] for each in document["files"]}:
            errors.append("a file of the project is not listed")
        for words, damage in DAMAGE.items():
            damaged = copy.deepcopy(document)
            damage(damaged)
            if words not in complaints(folder, damaged):
                errors.append(f"not found: {words}")
    for error in errors:
        print(error, file=sys.stderr)
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
