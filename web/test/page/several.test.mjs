// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Several services: what all of them find, and one that takes and gives files. That one is played
// here, between the page and its host, so that it can be slow, fail, and tell what it was sent.
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { join } from "node:path";
import { after, before, beforeEach, test } from "node:test";

import axe from "axe-core";

import { between, build, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";

const mine = {
    title: "Mine", type: 1, path: "Mine:", id: "mine", search: { path: "Mine:searches" },
    import: { path: "Mine:in" }, export: { path: "Mine:out" },
};
const found = (text) => Array.from({ length: 8 }, (_, i) => ({ type: 3, title: `${text} of mine ${i}`, path: `Mine:s?id=${i}` }));

let product;
let browser;
let page;
/** Answers calls of the service in place of what it does otherwise. */
let instead;
/** The parts of files that it was sent. */
let sent;
/** More services of that kind. */
let others;
/** Whether some service is too busy to say what it is called. */
let isBusy;

const rowsOf = (roles, rows) => ({
    rowsCount: rows.length, rows: rows.map((row) => roles.map((role) => row[role] ?? null)), roles: {},
});

function resultFor({ method, params }) {
    const path = params.path ?? "";
    if (method === "getRows" && path === "Mine:searches")
        return rowsOf(params.roles, [{ type: 5, title: "Search mine", query: "w", queryPath: "Mine:found" }]);
    if (method === "getRows" && path.startsWith("Mine:found?w="))
        return rowsOf(params.roles, found(decodeURIComponent(path.slice(13))).slice(params.first, params.last + 1));
    if (method === "getRows" && path === "Mine:")
        return rowsOf(params.roles, [{ type: 3, title: "My station", path: "Mine:s?id=0" }]);
    if (method === "getData" && path.startsWith("Mine:out?format="))
        return { values: [{ name: `my.${path.slice(16)}`, data: "#EXTM3U\nhttp://ä/\n" }] };
    if (method === "setData" && path === "Mine:in") {
        sent.push(params.value);
        const isLast = params.value.part === params.value.parts - 1;
        return { value: isLast ? { added: 2, known: 1, skipped: 0, message: "" } : null };
    }
    return method === "subscribe" || method === "unsubscribe" ? {} : null;
}

before(async () => {
    product = await Product.start({ hostArgs: ["--plugin", join(build, "tests/host/plugins/libvesk_cb_good_too.so")] });
    browser = await launch();
});
after(async () => {
    await browser?.close();
    await product?.end();
});

async function newVisit(options) {
    page = await newPage(browser, product, options);
    await between(page, {
        call(message, answer) {
            if (isBusy && message.params?.path === "host:services" && message.params.roles?.includes("title"))
                return true;
            if (!String(message.params?.path ?? "").startsWith("Mine:"))
                return false;
            if (!instead?.(message, answer))
                answer({ result: resultFor(message) });
            return true;
        },
        answered(asked, message) {
            if (asked.method !== "getRows" || asked.params.path !== "host:services" || !message.result)
                return;
            const rows = [mine, ...others];
            message.result.rows.push(...rowsOf(asked.params.roles, rows).rows);
            message.result.rowsCount += rows.length;
        },
    });
}

beforeEach(async () => {
    await page?.context().close();
    instead = null;
    sent = [];
    others = [];
    isBusy = false;
    await newVisit();
});

const heading = (name) => page.getByRole("heading", { level: 1, name, exact: true }).waitFor();
const group = (name) => page.getByRole("region", { name, exact: true });
const box = () => page.getByRole("searchbox");
const where = () => page.getByRole("combobox", { name: "Where to search" });
const hit = (name) => page.getByRole("button", { name, exact: true });

async function search(text) {
    await page.goto(product.url);
    await heading("Services");
    await box().fill(text);
    await box().press("Enter");
    await heading(`Results for “${text}”`);
}

test("asks all services at once, and shows what each finds", async () => {
    await search("jazz");
    await group("TuneIn").getByRole("button", { name: /Hafenlicht Jazz/ }).first().waitFor();
    await group("Mine").getByRole("button", { name: "jazz of mine 4", exact: true }).waitFor();
    await group("Good plug-in").getByRole("listitem").first().waitFor();
    assert.equal(await group("Mine").getByRole("listitem").count(), 5, "a group is short");
    await group("Mine").getByText("8 entries").waitFor();
    onlyProblemsOf(page);
});

test("the rest of a group is on a screen of its own, and Back returns to the groups", async () => {
    await search("jazz");
    await page.getByRole("link", { name: "Show all of Mine" }).click();
    await hit("jazz of mine 7").waitFor();
    await heading("Results for “jazz”");
    assert.equal(await where().evaluate((select) => select.selectedOptions[0].text), "Mine");
    await page.getByRole("button", { name: "Back", exact: true }).click();
    await group("TuneIn").waitFor();
    assert.equal(await where().evaluate((select) => select.selectedOptions[0].text), "All services");
    await page.reload();
    await group("Mine").getByRole("button", { name: "jazz of mine 0", exact: true }).waitFor();
    onlyProblemsOf(page);
});

test("a slow service holds no other one up, and what came first moves no more", async () => {
    let late;
    instead = ({ params }, answer) => {
        if (!params.path.startsWith("Mine:found"))
            return false;
        late = () => answer({ result: rowsOf(params.roles, found("late")) });
        return true;
    };
    await search("jazz");
    const first = group("TuneIn").getByRole("button", { name: /Hafenlicht Jazz/ }).first();
    await first.waitFor();
    await group("Good plug-in").getByRole("listitem").first().waitFor();
    await group("Mine").getByRole("button", { name: "Cancel" }).waitFor();
    const before = await first.boundingBox();
    late();
    await hit("late of mine 0").waitFor();
    assert.deepEqual(await first.boundingBox(), before);
    const order = await page.locator("main section h2").allTextContents();
    assert.equal(order[order.length - 1], "Mine");
    onlyProblemsOf(page);
});

test("a service that fails says so in its group, and is asked again on demand", async () => {
    instead = ({ params }, answer) => {
        if (!params.path.startsWith("Mine:found"))
            return false;
        answer({ error: { code: -32000, message: "Out of order.", data: { name: "m:1", title: "" } } });
        return true;
    };
    await search("jazz");
    await group("Mine").getByRole("alert").getByText("Out of order.").waitFor();
    await group("TuneIn").getByRole("button", { name: /Hafenlicht Jazz/ }).first().waitFor();
    instead = null;
    await group("Mine").getByRole("button", { name: "Try again" }).click();
    await hit("jazz of mine 0").waitFor();
    onlyProblemsOf(page);
});

test("a service whose searches cannot be read is there as well", async () => {
    instead = ({ params }, answer) => {
        if (params.path !== "Mine:searches")
            return false;
        answer({ error: { code: -32000, message: "Out of order.", data: { name: "m:1", title: "" } } });
        return true;
    };
    await search("jazz");
    await group("Mine").getByText("Out of order.").waitFor();
    instead = null;
    await group("Mine").getByRole("button", { name: "Try again" }).click();
    await hit("jazz of mine 0").waitFor();
});

test("a service that is busy when the page is opened delays itself only", async () => {
    isBusy = true;
    await page.goto(product.url);
    await box().fill("jazz");
    await box().press("Enter");
    await group("mine").getByRole("button", { name: "jazz of mine 0", exact: true }).waitFor();
    await group("tunein").getByRole("button", { name: /Hafenlicht Jazz/ }).first().waitFor();
    onlyProblemsOf(page);
});

test("the arrow keys lead through all groups, from the search field on", async () => {
    await search("jazz");
    await hit("jazz of mine 0").waitFor();
    await group("Good plug-in").getByRole("listitem").first().waitFor();
    await group("TuneIn").getByRole("button", { name: /Hafenlicht Jazz/ }).first().waitFor();
    await box().focus();
    await page.keyboard.press("ArrowDown");
    const focused = () => page.evaluate(() => document.activeElement.closest("section")?.dataset.group ?? "");
    const groups = new Set([await focused()]);
    for (let i = 0; i < 12; ++i) {
        await page.keyboard.press("ArrowDown");
        groups.add(await focused());
    }
    assert.ok(groups.size >= 2, [...groups].join());
    await page.keyboard.press("Home");
    assert.equal(await focused(), await page.locator("main section").first().getAttribute("data-group"));
});

test("is read out and operated as it is seen, in light and dark", async () => {
    for (const colorScheme of ["light", "dark"]) {
        await page.context().close();
        await newVisit({ colorScheme });
        instead = ({ params }, answer) => {
            if (!params.path.startsWith("Mine:found"))
                return false;
            answer({ error: { code: -32000, message: "Out of order.", data: { name: "m:1", title: "" } } });
            return true;
        };
        await search("jazz");
        await group("Mine").getByText("Out of order.").waitFor();
        await group("TuneIn").getByRole("button", { name: /Hafenlicht Jazz/ }).first().waitFor();
        await checkAccess("the groups");
        await page.goto(product.url + "#Mine:");
        await page.getByRole("button", { name: "Import files …" }).waitFor();
        await checkAccess("the buttons for files");
    }
});

async function checkAccess(what) {
    await page.evaluate(axe.source);
    const { violations } = await page.evaluate(() => axe.run(document));
    assert.deepEqual(violations.map(({ id, help, nodes }) => `${what}: ${id}: ${help}: ${nodes.map((n) => n.html).join(" | ")}`), []);
}

test("what is typed searches while it is typed, everywhere or in one service", async () => {
    await page.goto(product.url);
    await heading("Services");
    await box().fill("ja");
    await heading("Results for “ja”");
    await box().pressSequentially("zz");
    await heading("Results for “jazz”");
    await hit("jazz of mine 0").waitFor();
    await where().selectOption({ label: "Mine" });
    await hit("jazz of mine 7").waitFor();
    assert.equal(await page.locator("main section.found").count(), 0);
    await box().fill("");
    await heading("Services");
    onlyProblemsOf(page);
});

test("fits on a phone", async () => {
    await page.context().close();
    await newVisit({ viewport: { width: 360, height: 700 }, hasTouch: true, isMobile: true });
    const fits = () => page.evaluate(() => document.documentElement.scrollWidth <= innerWidth);
    await search("jazz");
    await group("TuneIn").getByRole("button", { name: /Hafenlicht Jazz/ }).first().waitFor();
    await hit("jazz of mine 4").waitFor();
    assert.ok(await fits(), "the groups");
    await page.goto(product.url + "#Mine:");
    await page.getByRole("button", { name: "Import files …" }).waitFor();
    assert.ok(await fits(), "the buttons");
});

/** Drops files on the page, as the file manager would. */
async function drop(files) {
    const data = await page.evaluateHandle((all) => {
        const transfer = new DataTransfer();
        for (const { name, text, size } of all)
            transfer.items.add(new File([text ?? new Uint8Array(size)], name));
        return transfer;
    }, files);
    await page.dispatchEvent("main", "dragover", { dataTransfer: data });
    await page.locator(".drop").waitFor();
    await page.dispatchEvent("main", "drop", { dataTransfer: data });
    assert.equal(await page.locator(".drop").count(), 0);
}

const notice = (text) => page.locator(".notice").getByText(text).waitFor();

test("files that are dropped on the page are imported one after the other", async () => {
    await page.goto(product.url);
    await heading("Services");
    await page.getByRole("link", { name: "Mine" }).waitFor();
    await drop([{ name: "a.m3u", text: "http://ä/\n" }, { name: "big.pls", size: 1024 * 1024 + 1 }, { name: "b.opml", size: 100_000 }]);
    await notice(/a\.m3u: 2 added, 1 known already, 0 skipped\.\s+big\.pls is larger than 1 MiB\.\s+b\.opml: 2 added, 1 known already, 0 skipped\./);
    assert.deepEqual(sent.map(({ name, part, parts }) => [name, part, parts]),
        [["a.m3u", 0, 1], ["b.opml", 0, 3], ["b.opml", 1, 3], ["b.opml", 2, 3]]);
    assert.equal(Buffer.from(sent[0].data, "base64").toString(), "http://ä/\n");
    assert.equal(sent[1].id, sent[3].id);
    assert.notEqual(sent[0].id, sent[1].id);
    onlyProblemsOf(page);
});

test("a file that is refused says why, and keeps no other out", async () => {
    await page.goto(product.url);
    await page.getByRole("link", { name: "Mine" }).waitFor();
    instead = ({ method, params }, answer) => {
        if (method !== "setData" || params.value.name !== "bad.m3u")
            return false;
        answer({ error: { code: -32000, message: "This is no list.", data: { name: "m:2", title: "" } } });
        return true;
    };
    await drop([{ name: "bad.m3u", text: "x" }, { name: "good.m3u", text: "x" }]);
    await notice(/bad\.m3u: This is no list\.\s+good\.m3u: 2 added/);
});

test("of several services that take files, the reader chooses one", async () => {
    others = [{ ...mine, title: "Others", path: "Others:", id: "others", search: null, import: { path: "Others:in" } }];
    await page.goto(product.url);
    await page.getByRole("link", { name: "Others" }).waitFor();
    await drop([{ name: "a.m3u", text: "x" }]);
    await page.getByRole("dialog", { name: "Where to import" }).getByRole("button", { name: "Mine" }).click();
    await notice("a.m3u: 2 added");
    assert.equal(sent.length, 1);
});

test("a service's first screen has buttons for its files", async () => {
    await page.goto(product.url);
    await page.getByRole("link", { name: "Mine" }).click();
    await heading("Mine");
    const [chooser] = await Promise.all([
        page.waitForEvent("filechooser"), page.getByRole("button", { name: "Import files …" }).click()]);
    await chooser.setFiles([{ name: "c.pls", mimeType: "audio/x-scpls", buffer: Buffer.from("x") }]);
    await notice("c.pls: 2 added");
    await page.getByRole("combobox", { name: "Format" }).selectOption("opml");
    const [file] = await Promise.all([
        page.waitForEvent("download"), page.getByRole("button", { name: "Export", exact: true }).click()]);
    assert.equal(file.suggestedFilename(), "my.opml");
    assert.equal(await readFile(await file.path(), "utf8"), "#EXTM3U\nhttp://ä/\n");
    onlyProblemsOf(page);
});
