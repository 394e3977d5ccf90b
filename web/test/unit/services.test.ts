// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import "./browser";

import assert from "node:assert/strict";
import { test } from "node:test";

const { access, readAccess } = await import("../../src/model/access");
const { importers, queries, readService, searchAt, searchedText, searches, searchFor, services } = await import("../../src/model/services");

test("a service says what it can do", () => {
    const service = readService({
        path: "X:", id: "x", title: "Ex", search: { path: "X:searches" },
        favorites: { path: "X:kept", toggle: ["X:menu/keep", ""], ids: ["id", 5] },
        account: { path: "X:me", type: 99, key: "membership" },
        import: { path: "X:in" }, export: { path: "X:out" },
    });
    assert.equal(service.id, "x");
    assert.equal(service.title, "Ex");
    assert.equal(service.searchPath, "X:searches");
    assert.deepEqual(service.favorites, { path: "X:kept", toggle: ["X:menu/keep"], ids: ["id"] });
    assert.deepEqual(service.account, { path: "X:me", type: 99, key: "membership" });
    assert.equal(service.importPath, "X:in");
    assert.equal(service.exportPath, "X:out");
});

test("what a service does not say, or says in the wrong type, it cannot do", () => {
    for (const role of [null, undefined, "X:kept", {}, { path: 5 }, []]) {
        const service = readService({ path: "X:", favorites: role, account: role, import: role, export: role });
        assert.equal(service.favorites, null);
        assert.equal(service.account, null);
        assert.equal(service.importPath + service.exportPath, "");
    }
});

test("an owner's files go to the services that take some", () => {
    services.value = [readService({ path: "X:" }), readService({ path: "Y:", import: { path: "Y:in" } })];
    assert.equal(importers.value.length, 0);
    access.value = readAccess({ role: "owner" });
    assert.deepEqual(importers.value.map((service) => service.path), ["Y:"]);
});

test("a screen of hits is known by the search that it belongs to", () => {
    const service = readService({ path: "X:", search: { path: "X:searches" } });
    const query = { service: "X:", serviceTitle: "Ex", title: "Search", key: "w", path: "X:found?m=1" };
    searches.value = [
        { service: readService({ path: "Y:" }), queries: null, error: null },
        { service, queries: [query], error: null },
    ];
    assert.deepEqual(queries.value, [query]);
    assert.deepEqual(searchAt("X:found?m=1&w=a%20b"), { query, text: "a b" });
    assert.equal(searchAt("X:found?m=1"), null);
    assert.equal(searchAt("X:found?w=a"), null);
    assert.deepEqual(searchAt(searchFor("a/b & c")), { query: null, text: "a/b & c" });
    assert.equal(searchedText("X:found?q=a"), null);
});
