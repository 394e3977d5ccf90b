// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/** A path in its text form, `prefix:base?key=value&key=value`; docs/rpc.md. */
export type Path = string;

/** Percent-encodes as the host does: all but the unreserved characters of RFC 3986, section 2.3. */
function encode(text: string): string {
    // encodeURIComponent() throws for a lone surrogate.
    return encodeURIComponent(text.replace(/\p{Surrogate}/gu, "\ufffd")).replace(
        /[!'()*]/g,
        (c) => "%" + c.charCodeAt(0).toString(16).toUpperCase(),
    );
}

function decode(text: string): string {
    try {
        return decodeURIComponent(text);
    } catch {
        return text;
    }
}

export function prefixOf(path: Path): string {
    const end = path.indexOf(":");
    return end < 0 ? "" : path.slice(0, end);
}

/** Adds a parameter, in the order in which the host writes them. */
export function withParam(path: Path, key: string, value: string): Path {
    const [base = "", query = ""] = split(path);
    const params = new Map<string, string>();
    for (const item of query.split("&")) {
        if (item === "")
            continue;
        const at = item.indexOf("=");
        params.set(
            decode(at < 0 ? item : item.slice(0, at)), at < 0 ? "" : decode(item.slice(at + 1)));
    }
    params.set(key, value);
    const sorted = [...params].sort(([a], [b]) => (a < b ? -1 : a > b ? 1 : 0));
    return base + "?" + sorted.map(([k, v]) => encode(k) + "=" + encode(v)).join("&");
}

export function paramOf(path: Path, key: string): string | null {
    const [, query = ""] = split(path);
    for (const item of query.split("&")) {
        const at = item.indexOf("=");
        if (at >= 0 && decode(item.slice(0, at)) === key)
            return decode(item.slice(at + 1));
    }
    return null;
}

/** Whether both paths are equal apart from the parameter \a key. */
export function equalsBut(a: Path, b: Path, key: string): boolean {
    return withParam(a, key, "") === withParam(b, key, "");
}

function split(path: Path): [string, string] {
    const at = path.indexOf("?");
    return at < 0 ? [path, ""] : [path.slice(0, at), path.slice(at + 1)];
}
