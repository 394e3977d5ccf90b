// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// What goes wrong between the page, its host and a service: nothing that is shown is a lie.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import { between, expectEventually, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";

let product;
let browser;

before(async () => {
    product = await Product.start();
    browser = await launch();
});
after(async () => {
    await browser?.close();
    await product?.end();
});

const local = "TuneIn:browse/uri/Browse.ashx?c=local";
const player = (where) => where.getByRole("region", { name: "Player" });
const stations = (where) => where.locator("button.audio");
/** What says that something is wrong: a live region that is empty, as the one for an alarm that rings, says nothing. */
const alerts = (where) => where.locator('[role="alert"]:not(:empty)');

async function openLocal(link, options) {
    const page = await newPage(browser, product, options);
    if (link)
        await between(page, link);
    await page.goto(`${product.url}#${local}`);
    await stations(page).nth(3).waitFor();
    return page;
}

test("a row is asked for by its own path, and when it has gone the list is read again", async () => {
    const asked = [];
    const page = await openLocal({
        call: (call, answer) => {
            asked.push(call);
            if (call.method !== "player.play")
                return false;
            answer({ error: { code: -32004, message: "This entry is no longer in the list." } });
            return true;
        },
    });
    const { rows } = await product.call("getRows", { path: local, roles: ["title", "path"] });
    await stations(page).nth(2).click();
    await page.getByText("That entry is no longer in the list").waitFor();
    const title = await stations(page).nth(2).locator(".title").textContent();
    const play = asked.find((call) => call.method === "player.play");
    assert.equal(play.params.path, rows.find((row) => row[0] === title)[1]);
    const reads = () => asked.slice(asked.indexOf(play)).filter((c) => c.method === "getRows" && c.params.path === local);
    await expectEventually(() => reads().length > 0, "the list read again");
    // To try again is to ask for the same row.
    await player(page).getByRole("button", { name: "Try again" }).click();
    await expectEventually(() => asked.filter((c) => c.method === "player.play").length === 2, "another try");
    assert.deepEqual(asked.filter((c) => c.method === "player.play")[1].params, play.params);
    onlyProblemsOf(page);
    await page.context().close();
});

test("says after three seconds that a service is slow, and waits no longer than the reader", async () => {
    const page = await newPage(browser, product);
    let held = [];
    let isHeld = true;
    await between(page, {
        call: (call, answer, pass) => {
            if (!isHeld || call.method !== "getRows" || call.params.path !== local)
                return false;
            held.push(pass);
            return true;
        },
    });
    await page.goto(`${product.url}#${local}`);
    const slow = page.getByText("The service takes long to answer.");
    await expectEventually(() => held.length > 0, "a question");
    assert.equal(await slow.count(), 0);
    await slow.waitFor({ timeout: 6000 });
    await page.getByRole("main").getByRole("button", { name: "Cancel" }).click();
    await page.getByText("Cancelled.").waitFor();
    assert.equal(await page.locator(".skeleton").count(), 0);
    // What comes late is for nobody; another try is one.
    isHeld = false;
    held.forEach((pass) => pass());
    await new Promise((later) => setTimeout(later, 500));
    assert.equal(await stations(page).count(), 0);
    await page.getByRole("button", { name: "Try again" }).click();
    await stations(page).first().waitFor();
    assert.equal(await slow.count(), 0);
    onlyProblemsOf(page);
    await page.context().close();
});

test("what is asked for and takes long can be cancelled, and is not played when it comes", async () => {
    let late;
    const asked = [];
    const page = await openLocal({
        call: (call, answer, pass) => {
            asked.push(call.method);
            if (call.method !== "player.play")
                return false;
            late = answer;
            return true;
        },
    });
    await stations(page).nth(1).click();
    await player(page).getByText("The service takes long to answer.").waitFor({ timeout: 6000 });
    await player(page).getByRole("button", { name: "Cancel" }).click();
    await player(page).waitFor({ state: "detached" });
    late({ result: { playId: { id: "late" } } });
    await expectEventually(() => asked.includes("player.stop"), "a stop of what came late");
    onlyProblemsOf(page);
    await page.context().close();
});

test("a link that would change something says so, and offers no other try", async () => {
    const page = await newPage(browser, product);
    await between(page, {
        call: (call, answer) => {
            if (call.method !== "getRows" || !call.params.path.includes("Preset.ashx"))
                return false;
            answer({ error: { code: -32005, message: "no", data: { name: "notOffered" } } });
            return true;
        },
    });
    await page.goto(`${product.url}#TuneIn:browse/uri/Preset.ashx?c=add&id=s1`);
    await page.getByText("This link would change something, so it was not opened.").waitFor();
    assert.equal(await page.getByRole("button", { name: "Try again" }).count(), 0);
    await page.getByRole("button", { name: "Start page" }).click();
    await page.getByRole("link", { name: "Local Radio" }).waitFor();
    onlyProblemsOf(page);
    await page.context().close();
});

test("the start page is that of the only service, however late it is known", async () => {
    const page = await newPage(browser, product);
    const held = [];
    await between(page, {
        call: (call, answer, pass) => {
            const isHeld = call.method === "getRows" && call.params.path === "host:services";
            if (isHeld)
                held.push(pass);
            return isHeld;
        },
    });
    await page.goto(`${product.url}#${local}`);
    await stations(page).first().waitFor();
    await page.getByRole("link", { name: "Start page" }).click();
    await expectEventually(() => page.evaluate(() => location.hash === ""), "the home screen's address");
    held.forEach((pass) => pass());
    await page.getByRole("link", { name: "Local Radio" }).waitFor();
    await page.goBack();
    await stations(page).first().waitFor();
    onlyProblemsOf(page);
    await page.context().close();
});

test("an address that is typed into an open page is opened over a connection of its own", async () => {
    const page = await openLocal();
    let connections = 0;
    page.on("websocket", () => ++connections);
    await page.evaluate(() => (location.hash = "#TuneIn:browse/uri/Browse.ashx?c=music"));
    await page.getByRole("link", { name: "Jazz", exact: true }).or(page.getByRole("link", { name: /Jazz/ })).first().waitFor();
    assert.equal(connections, 1);
    await page.goBack();
    await stations(page).first().waitFor();
    await page.context().close();
});

test("an error heals by itself once the service answers again", async () => {
    const page = await newPage(browser, product);
    await product.fault("http-status@Browse.ashx:500");
    await page.goto(`${product.url}#TuneIn:browse/uri/Browse.ashx?c=talk`);
    await page.getByRole("alert").locator("p").first().waitFor();
    assert.equal(await page.getByText("There is nothing here.").count(), 0);
    await product.noFaults();
    await page.locator(".rows li .title").first().waitFor({ timeout: 15_000 });
    assert.equal(await alerts(page).count(), 0);
    await page.context().close();
});

test("a list that could not be had is no empty list", async () => {
    const page = await newPage(browser, product);
    await product.fault("head-fault@Browse.ashx:503");
    await page.goto(`${product.url}#TuneIn:browse/uri/Browse.ashx?c=sports`);
    const alert = alerts(page);
    await alert.getByText("The TuneIn service is out of order (503). Please try again later.").waitFor();
    assert.equal(await page.getByText("There is nothing here.").count(), 0);
    await product.noFaults();
    await alert.getByRole("button", { name: "Try again" }).click();
    await page.locator(".rows li .title").first().waitFor();
    assert.equal(await alert.count(), 0);
    const rows = await page.locator(".rows li .title").count();
    await product.fault("head-fault@Browse.ashx:403");
    await page.reload();
    await alert.getByText('refuses this device (403). Check the setting "TuneIn partner id".').waitFor();
    await product.noFaults();
    await alert.getByRole("button", { name: "Try again" }).click();
    await expectEventually(async () => (await page.locator(".rows li .title").count()) === rows, "the rows");
    onlyProblemsOf(page);
    await page.context().close();
});

test("a device that the service refuses is told of the setting to look at", async () => {
    const page = await newPage(browser, product);
    await product.fault("http-status@Browse.ashx:403");
    await page.goto(`${product.url}#TuneIn:browse/uri/Browse.ashx?c=podcast`);
    await page.getByRole("alert")
        .getByText('The TuneIn service refuses this device (HTTP 403). Check the setting "TuneIn partner id".').waitFor();
    await product.noFaults();
    await page.getByRole("button", { name: "Try again" }).click();
    await page.locator(".rows li .title").first().waitFor();
    onlyProblemsOf(page);
    await page.context().close();
});

test("a list that is empty says so", async () => {
    const page = await newPage(browser, product);
    await page.goto(`${product.url}#TuneIn:browse/uri/Browse.ashx?c=music&veskNavigation=gone`);
    await page.getByText("There is nothing here.").waitFor();
    assert.equal(await alerts(page).count(), 0);
    await page.context().close();
});

test("an error above rows that stand moves none of them", async () => {
    let fails = false;
    const page = await openLocal({
        call: (call, answer) => {
            if (!fails || call.method !== "getRows" || call.params.path !== local)
                return false;
            answer({ error: { code: -32000, message: "It broke", data: { name: "x" } } });
            return true;
        },
    });
    const top = () => stations(page).first().evaluate((row) => row.getBoundingClientRect().top);
    const was = await top();
    fails = true;
    // A change is told: the rows are read again.
    page.tell({ method: "changed", params: { path: local, kind: "rowsReset", first: -1, last: -1 } });
    await page.getByRole("alert").getByText("It broke").waitFor();
    assert.equal(await top(), was);
    assert.equal(await page.getByText("There is nothing here.").count(), 0);
    fails = false;
    await page.getByRole("alert").getByRole("button", { name: "Try again" }).click();
    await alerts(page).waitFor({ state: "detached" });
    await page.context().close();
});

test("rows without any role are not drawn, and a menu of nothing is not offered", async () => {
    const page = await newPage(browser, product);
    let hasLibrary = false;
    const menus = [];
    await between(page, {
        call: (call, answer) => {
            if (call.params?.path?.startsWith("TuneIn:browser_context"))
                menus.push(call.params.path);
            if (hasLibrary || call.method !== "presets.list")
                return false;
            answer({ error: { code: -32601, message: "Method not found" } });
            return true;
        },
        answered: (call, message) => {
            if (call.method !== "getRows" || call.params.path !== local || !message.result)
                return;
            const { rows } = message.result;
            rows[1] = rows[1].map(() => null);
            const menu = call.params.roles.indexOf("context");
            rows[2][menu] = { ...rows[2][menu], path: "TuneIn:browser_context?guideId=&veskMatchingPath=TuneIn%3Abrowse" };
        },
    });
    await page.goto(`${product.url}#${local}`);
    const row = (index) => page.locator(`.rows li[data-row="${index}"]`);
    await row(3).waitFor();
    assert.equal(await row(1).count(), 0);
    assert.equal(await row(2).locator(".more").count(), 0);
    assert.equal(await row(3).locator(".more").count(), 1);
    const [above, below] = await Promise.all([0, 2].map((i) => row(i).boundingBox()));
    assert.ok(Math.abs(below.y - above.y - above.height) < 1, "no gap");
    const { rowsCount } = await product.call("getRows", { path: local });
    await page.getByText(`${rowsCount - 1} entries`).waitFor();
    // A radio that keeps a library does something with every station, and asks for no menu where there is none.
    hasLibrary = true;
    await page.reload();
    const sheet = page.getByRole("dialog");
    for (const [index, parts] of [[2, ["This radio"]], [3, ["This radio", "TuneIn"]]]) {
        await row(index).locator(".more").click();
        await sheet.getByRole("button", { name: "Star on this radio" }).waitFor();
        assert.deepEqual(await sheet.getByRole("heading", { level: 3 }).allTextContents(), parts);
        assert.equal(menus.length > 0, index === 3);
        await page.keyboard.press("Escape");
        await sheet.waitFor({ state: "hidden" });
    }
    onlyProblemsOf(page);
    await page.context().close();
});

test("without its host the page says so wherever it is scrolled, and moves no more", async () => {
    const page = await openLocal(null, { reducedMotion: "no-preference", viewport: { width: 390, height: 500 } });
    await stations(page).first().click();
    await player(page).getByText("Playing").waitFor();
    const moving = () => page.evaluate(() => document.getAnimations().filter(
        (a) => a.effect.getTiming().iterations === Infinity && a.playState === "running").length);
    await page.evaluate(() => scrollTo(0, 0));
    await expectEventually(async () => (await moving()) > 0, "something that moves while it plays");
    await page.evaluate(() => scrollTo(0, 600));
    await product.host.end();
    const banner = page.getByText("The connection to the host is lost");
    await banner.waitFor();
    const { y } = await banner.boundingBox();
    assert.ok(y >= 0 && y < 200, `the banner is at ${y}`);
    await player(page).getByText("Not connected").waitFor();
    await expectEventually(async () => (await moving()) === 0, "rest");
    // A click says why nothing happens; so do a menu and a folder.
    await stations(page).nth(1).click();
    await page.getByText("There is no connection to the host, so nothing happens.").waitFor();
    await page.locator(".more").nth(1).click();
    await page.getByRole("dialog").getByText("This is shown once the host can be reached again.").waitFor();
    await product.startHost();
    await page.getByRole("dialog").getByRole("button", { name: /Favorites/ }).waitFor();
    await page.context().close();
});

test("what is being done about a fault is shown and spoken", async () => {
    const page = await openLocal();
    await stations(page).first().click();
    await player(page).getByText("Playing").waitFor();
    const state = await product.call("player.state");
    await page.context().close();
    // Whatever the host tells meanwhile, such as another title of the stream.
    let problem = "Trying again in 8 s.";
    const withProblem = (members) => Object.assign(members, { state: 1, problem });
    const told = await openLocal({
        answered: ({ method }, { result }) => method === "player.state" && result && withProblem(result),
        told: ({ method, params }) => method === "player.changed" && withProblem(params),
    });
    await player(told).getByText("Trying again in 8 s.").waitFor();
    const spoken = () => told.locator(".unseen[role=status]").allTextContents();
    assert.ok((await spoken()).some((text) => text.includes("Trying again in 8 s.")));
    // Seconds that run down are seen, not read out.
    problem = "Trying again in 7 s.";
    told.tell({ method: "player.changed", params: withProblem({ ...state }) });
    await player(told).getByText("Trying again in 7 s.").waitFor();
    assert.ok((await spoken()).some((text) => text.includes("in 8 s.")));
    await product.call("player.stop");
    await told.context().close();
});

test("a value that is refused leaves its field, and one that is pinned cannot be edited", async () => {
    const page = await newPage(browser, product);
    await between(page, {
        call: (call, answer) => {
            if (call.method !== "setData")
                return false;
            answer({ error: { code: -32000, message: "No such format: x", data: { name: "x" } } });
            return true;
        },
    });
    await page.goto(`${product.url}#host:settings/advanced`);
    // The tests' host was started with this one.
    const pinned = page.getByRole("textbox", { name: "TuneIn partner id" });
    assert.equal(await pinned.getAttribute("readonly"), "");
    await page.getByText("Fixed when the host was started.").waitFor();
    const formats = page.getByRole("textbox", { name: /formats/ });
    const was = await formats.inputValue();
    await formats.fill("x");
    await formats.press("Enter");
    await page.getByRole("alert").getByText("No such format: x").waitFor();
    assert.equal(await formats.inputValue(), was);
    onlyProblemsOf(page);
    await page.context().close();
});
