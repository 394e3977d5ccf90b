// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Puts the libraries that package-lock.json names into node_modules, for machines without npm:
//
//   node fetch.mjs [--dev] [--registry URL] [--from FOLDER]
//   node fetch.mjs --registry URL --save FOLDER
//
// Each comes from npm's registry, or from FOLDER, as the tarball that npm itself would take, and is taken only if it
// has the checksum of package-lock.json. --dev takes also those for the tests. node_modules is replaced when all of them are
// there. --save puts the tarballs into a folder instead. Packages for one kind of machine only are left out.
import { execFile } from "node:child_process";
import { createHash } from "node:crypto";
import { mkdir, readFile, rename, rm, writeFile } from "node:fs/promises";
import { basename, dirname, join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { parseArgs, promisify } from "node:util";

const run = promisify(execFile);
const here = dirname(fileURLToPath(import.meta.url));

const MaxBytes = 64 * 1024 * 1024;
const PatienceMs = 120_000;

/** The packages of a lock file: `{name, folder, version, integrity}`, throws if it is not one. */
export function packagesOf(lock, withDev) {
    return Object.entries(lock.packages)
        .filter(([folder, entry]) => folder !== "" && !entry.os && !entry.cpu && (withDev || !entry.dev))
        .map(([folder, { version, integrity }]) => {
            if (!/^node_modules\/(@?[a-z0-9][a-z0-9._-]*\/?)+$/.test(folder) || folder.includes(".."))
                throw new Error(`package-lock.json: ${folder} is no folder of a package`);
            if (!/^sha512-[A-Za-z0-9+/]{86}==$/.test(integrity ?? ""))
                throw new Error(`package-lock.json: ${folder} has no sha512 checksum`);
            const name = folder.slice(folder.lastIndexOf("node_modules/") + "node_modules/".length);
            return { name, folder, version, integrity };
        });
}

/** What the tarball of a package is called, by itself and below the registry's address. */
export function tarballOf({ name, version }) {
    return { file: `${name.replace("@", "").replace("/", "-")}-${version}.tgz`, path: `${name}/-/${basename(name)}-${version}.tgz` };
}

/** The content, if it has the library's checksum. */
export function checked(library, content) {
    const digest = "sha512-" + createHash("sha512").update(content).digest("base64");
    if (digest !== library.integrity)
        throw new Error("its checksum is not the one in package-lock.json");
    return content;
}

async function download(address) {
    const response = await fetch(address, { signal: AbortSignal.timeout(PatienceMs) });
    if (!response.ok)
        throw new Error(`HTTP ${response.status}`);
    const parts = [];
    let size = 0;
    for await (const part of response.body) {
        size += part.length;
        if (size > MaxBytes)
            throw new Error(`more than ${MaxBytes} bytes`);
        parts.push(part);
    }
    return Buffer.concat(parts);
}

async function* tarballs({ dev, registry, from }) {
    const lock = JSON.parse(await readFile(join(here, "package-lock.json"), "utf8"));
    for (const library of packagesOf(lock, dev)) {
        const { file, path } = tarballOf(library);
        try {
            const content = from
                ? await readFile(join(from, file))
                : await download(new URL(path, registry.endsWith("/") ? registry : registry + "/"));
            yield { library, file, content: checked(library, content) };
        } catch (error) {
            throw new Error(`${library.name} ${library.version}: ${error.cause?.message ?? error.message}`);
        }
    }
}

async function save(options) {
    await mkdir(options.save, { recursive: true });
    for await (const { file, content } of tarballs(options))
        await writeFile(join(options.save, file), content);
}

async function install(options) {
    const target = join(here, "node_modules.new");
    await rm(target, { recursive: true, force: true });
    for await (const { library, content } of tarballs(options)) {
        const folder = join(target, library.folder.slice("node_modules/".length));
        await mkdir(folder, { recursive: true });
        const archive = join(target, "archive.tgz");
        await writeFile(archive, content);
        await run("tar", ["-xzf", archive, "-C", folder, "--strip-components=1", "--no-same-owner"]);
        await rm(archive);
    }
    // By its age the build knows whether the libraries are those of package-lock.json.
    await writeFile(join(target, ".package-lock.json"), "{}");
    await rm(join(here, "node_modules"), { recursive: true, force: true });
    await rename(target, join(here, "node_modules"));
}

if (import.meta.url === pathToFileURL(process.argv[1]).href) {
    const { values } = parseArgs({
        options: { dev: { type: "boolean" }, registry: { type: "string" }, from: { type: "string" }, save: { type: "string" } },
    });
    try {
        if (!values.from && !values.registry)
            throw new Error("neither --registry nor --from says where they are");
        await (values.save ? save(values) : install(values));
    } catch (error) {
        console.error(`The page's libraries: ${error.message}`);
        process.exit(1);
    }
}
