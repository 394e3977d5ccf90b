// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// A device of its own: the quiet view of a tablet on the wall, the lock screen, links for other devices.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import axe from "axe-core";

import { between, expectEventually, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";

const tablet = { viewport: { width: 1024, height: 768 }, hasTouch: true };
const local = "TuneIn:browse/uri/Browse.ashx?c=local";

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

const quiet = (page) => page.locator(".quiet-view");

async function play(page) {
    await page.goto(`${product.url}#${local}`);
    await page.locator("button.audio").first().click();
    await page.getByRole("region", { name: "Player" }).getByText("Playing").waitFor();
    return product.call("player.state");
}

/** A page that tells which wake locks it holds, in window.locks. */
async function watchLocks(page) {
    await page.addInitScript(() => {
        window.locks = [];
        Object.defineProperty(navigator, "wakeLock", { value: { request: async () => {
            const lock = { released: false, release: async () => void (lock.released = true) };
            window.locks.push(lock);
            return lock;
        } } });
    });
    return () => page.evaluate(() => window.locks.map(({ released }) => released));
}

test("shows time, cover, station and title, and keeps the screen on", async () => {
    const page = await newPage(browser, product, tablet);
    const locks = await watchLocks(page);
    const { title } = await play(page);
    await page.getByRole("button", { name: "Quiet view" }).click();
    await quiet(page).getByText(title, { exact: true }).waitFor();
    await expectEventually(
        () => quiet(page).locator("img").evaluate((img) => img.complete && img.naturalWidth > 0), "a picture");
    const clock = await quiet(page).locator("time").textContent();
    assert.match(clock, /^\d{1,2}:\d{2}\s[AP]M$/);
    const streamTitle = async () => (await product.call("player.state")).streamTitle;
    await expectEventually(async () => {
        const now = await streamTitle();
        return now !== "" && (await quiet(page).locator(".quiet-title").textContent()) === now;
    }, "the stream's title");
    assert.deepEqual(await locks(), [false]);
    assert.equal(await page.evaluate(() => document.scrollingElement.scrollWidth > innerWidth), false);
    await product.call("player.stop");
    await quiet(page).getByText(title, { exact: true }).waitFor({ state: "detached" });
    // It stays after a reload, and ends with a touch, which operates nothing below it.
    await page.reload();
    await quiet(page).waitFor();
    await page.touchscreen.tap(500, 400);
    await page.locator("button.audio").first().waitFor();
    assert.equal((await product.call("player.state")).state, 0);
    await page.getByRole("button", { name: "Quiet view" }).click();
    await quiet(page).waitFor();
    await page.goBack();
    await page.locator("button.audio").first().waitFor();
    assert.ok((await locks()).every((released) => released));
    onlyProblemsOf(page);
    await page.context().close();
});

test("is entered and left by keyboard", async () => {
    const page = await newPage(browser, product);
    await play(page);
    for (const key of ["Escape", " ", "a", "Enter"]) {
        await page.keyboard.press("q");
        await quiet(page).waitFor();
        await page.keyboard.press("Shift");
        assert.equal(await quiet(page).count(), 1);
        await page.keyboard.press(key);
        await page.locator("button.audio").first().waitFor();
        // The space bar does not pause what plays as well.
        assert.ok([1, 2].includes((await product.call("player.state")).state), "plays, or reads on for a moment");
    }
    // In a field it is a letter.
    await page.getByRole("searchbox").fill("");
    await page.getByRole("searchbox").press("q");
    assert.equal(await page.getByRole("searchbox").inputValue(), "q");
    await product.call("player.stop");
    // From an address it leads to the start page.
    const other = await newPage(browser, product);
    await other.goto(`${product.url}#page:quiet`);
    await quiet(other).waitFor();
    await other.keyboard.press("Escape");
    await other.getByRole("heading", { level: 1, name: "TuneIn" }).waitFor();
    onlyProblemsOf(page);
    onlyProblemsOf(other);
    await page.context().close();
    await other.context().close();
});

test("goes with the time, moves each minute, and dims until it is touched", async () => {
    const page = await newPage(browser, product, tablet);
    await page.clock.install({ time: new Date("2026-11-22T21:58:01") });
    await page.goto(`${product.url}#page:quiet`);
    await quiet(page).getByText("9:58 PM").waitFor();
    await quiet(page).getByText("Sunday, November 22").waitFor();
    const place = () => page.locator(".quiet-content").evaluate((content) => content.style.transform);
    const places = [await place()];
    assert.equal(await page.locator(".quiet-view.dim").count(), 0);
    for (const time of ["9:59 PM", "10:00 PM", "10:01 PM"]) {
        await page.clock.runFor(60_000);
        await quiet(page).getByText(time).waitFor();
        places.push(await place());
    }
    assert.equal(new Set(places).size, places.length);
    assert.equal(await page.locator(".quiet-view.dim").count(), 1);
    await page.mouse.move(10, 10);
    await page.locator(".quiet-view.dim").waitFor({ state: "detached" });
    await page.context().close();
});

test("moves without an animation for those who want none", async () => {
    for (const [reducedMotion, expected] of [["reduce", /^(none|all)?\b.*\b0s$|^0s$|^none/], ["no-preference", /3s/]]) {
        const page = await newPage(browser, product, { ...tablet, reducedMotion });
        await page.goto(`${product.url}#page:quiet`);
        const transition = await page.locator(".quiet-content").evaluate((content) => getComputedStyle(content).transition);
        assert.match(transition, expected, reducedMotion);
        await page.context().close();
    }
});

test("says that the host is away", async () => {
    const page = await newPage(browser, product, tablet);
    await page.goto(`${product.url}#page:quiet`);
    await quiet(page).waitFor();
    await product.host.end();
    await quiet(page).getByText("Not connected").waitFor();
    await product.startHost();
    await quiet(page).getByText("Not connected").waitFor({ state: "detached" });
    await page.context().close();
});

for (const [name, options] of Object.entries({
    "a tablet": tablet, "a telephone": { viewport: { width: 375, height: 667 }, isMobile: true, hasTouch: true },
    "a telephone on its side": { viewport: { width: 667, height: 375 }, isMobile: true, hasTouch: true },
})) {
    test(`is read by everybody, and whole on ${name}`, async () => {
        const page = await newPage(browser, product, options);
        await play(page);
        await page.goto(`${product.url}#page:quiet`);
        await quiet(page).locator(".quiet-station").waitFor();
        await page.evaluate(axe.source);
        const { violations } = await page.evaluate((values) => axe.run(document, { runOnly: { type: "tag", values } }),
            ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "wcag22aa", "best-practice"]);
        assert.deepEqual(violations.map(({ id, nodes }) => `${id}: ${nodes.map((node) => node.html).join(" | ")}`), []);
        const outside = await page.locator(".quiet-view time, .quiet-view .artwork, .quiet-station, .quiet-title").evaluateAll(
            (all) => all.map((each) => each.getBoundingClientRect())
                .filter(({ left, top, right, bottom }) => left < 0 || top < 0 || right > innerWidth || bottom > innerHeight).length);
        assert.equal(outside, 0);
        await product.call("player.stop");
        await page.context().close();
    });
}

/** A page that tells what it handed to the lock screen. */
async function watchSession(page) {
    await page.addInitScript(() => {
        window.handlers = {};
        const original = MediaSession.prototype.setActionHandler;
        MediaSession.prototype.setActionHandler = function (name, handler) {
            window.handlers[name] = handler;
            return original.call(this, name, handler);
        };
        const originalPlay = HTMLMediaElement.prototype.play;
        HTMLMediaElement.prototype.play = function () {
            window.heard = this;
            return originalPlay.call(this);
        };
    });
    return () => page.evaluate(() => {
        const { metadata, playbackState } = navigator.mediaSession;
        return {
            state: playbackState, title: metadata?.title, artist: metadata?.artist, pictures: metadata?.artwork.map(({ src }) => src) ?? [],
            sounds: window.heard ? !window.heard.paused : false,
            handled: Object.entries(window.handlers).filter(([, handler]) => handler).map(([name]) => name).sort(),
        };
    });
}

test("what the host plays is on the lock screen, which controls it", async () => {
    const page = await newPage(browser, product);
    const session = await watchSession(page);
    const { title } = await play(page);
    await expectEventually(async () => {
        const { state, sounds, artist, pictures } = await session();
        return state === "playing" && sounds && artist === title && pictures.length === 1;
    }, "the station on the lock screen");
    const { handled, pictures: [picture] } = await session();
    assert.deepEqual(handled, ["pause", "play", "stop"]);
    assert.match(picture, new RegExp(`^${product.url}artwork/[0-9a-f]{64}$`));
    await expectEventually(() => page.evaluate(() => window.heard.readyState >= HTMLMediaElement.HAVE_METADATA), "the silence's length");
    const sound = await page.evaluate(() => ({ loop: window.heard.loop, seconds: window.heard.duration, src: window.heard.src }));
    assert.deepEqual({ loop: sound.loop, seconds: sound.seconds }, { loop: true, seconds: 10 });
    assert.match(sound.src, /^blob:/);

    await page.evaluate(() => window.handlers.pause());
    await expectEventually(async () => (await product.call("player.state")).state === 3, "a pause");
    await expectEventually(async () => {
        const { state, sounds } = await session();
        return state === "paused" && !sounds;
    }, "the pause on the lock screen");
    await page.evaluate(() => window.handlers.play());
    await expectEventually(async () => (await session()).state === "playing", "playing again");
    await page.evaluate(() => window.handlers.stop());
    await expectEventually(async () => (await product.call("player.state")).state === 0, "a stop");
    await expectEventually(async () => {
        const { state, sounds, handled: still } = await session();
        return state === "none" && !sounds && still.length === 0;
    }, "an empty lock screen");
    onlyProblemsOf(page);
    await page.context().close();
});

test("makes no sound before it was touched, nor when that is switched off", async () => {
    const page = await newPage(browser, product);
    await play(page);
    const other = await newPage(browser, product);
    const session = await watchSession(other);
    // Looking into the page counts as a touch, which it is not.
    await other.addInitScript(() => {
        let isTouched = false;
        addEventListener("keydown", () => (isTouched = true), { capture: true });
        Object.defineProperty(navigator, "userActivation", { get: () => ({ hasBeenActive: isTouched }) });
    });
    await other.goto(`${product.url}#host:settings`);
    await expectEventually(async () => (await session()).state === "playing", "what the host plays");
    assert.equal((await session()).sounds, false);
    await other.getByRole("switch", { name: "On the lock screen" }).focus();
    await other.keyboard.press("Shift");
    await expectEventually(async () => (await session()).sounds, "the silence");
    await other.getByRole("switch", { name: "On the lock screen" }).click();
    await expectEventually(async () => (await session()).state === "none" && !(await session()).sounds, "nothing");
    await other.reload();
    await other.getByRole("region", { name: "Player" }).getByText("Playing").waitFor();
    assert.deepEqual(await session(), { state: "none", title: undefined, artist: undefined, pictures: [], sounds: false, handled: [] });
    assert.equal(await other.getByRole("switch", { name: "On the lock screen" }).isChecked(), false);
    await product.call("player.stop");
    onlyProblemsOf(other);
    await page.context().close();
    await other.context().close();
});

test("shares a link that works on other devices, or says why there is none", async () => {
    const page = await newPage(browser, product);
    await page.context().grantPermissions(["clipboard-read", "clipboard-write"], { origin: new URL(product.url).origin });
    let urls = ["https://192.168.1.5:8765/radio/"];
    await between(page, {
        call: ({ method }, answer) => {
            if (method === "access.info")
                answer({ result: { role: "owner", device: null, urls, fingerprint: null } });
            return method === "access.info";
        },
    });
    await page.goto(`${product.url}#${local}`);
    await page.locator("button.audio").first().waitFor();
    await page.getByRole("button", { name: "Share" }).click();
    await page.getByText("The link is copied.").waitFor();
    assert.equal(await page.evaluate(() => navigator.clipboard.readText()), `${urls[0]}#${local}`);
    // A browser that shares by itself is given the link.
    await page.evaluate(() => (navigator.share = async (data) => void (window.shared = data)));
    await page.getByRole("button", { name: "Share" }).click();
    const title = await page.getByRole("heading", { level: 1 }).textContent();
    assert.deepEqual(await page.evaluate(() => window.shared), { title, url: `${urls[0]}#${local}` });
    // Without a clipboard, as without TLS, the link is shown.
    await page.evaluate(() => {
        navigator.share = undefined;
        Object.defineProperty(navigator, "clipboard", { value: undefined });
    });
    await page.getByRole("button", { name: "Share" }).click();
    await page.getByText(`${urls[0]}#${local}`).waitFor();
    urls = [];
    await page.reload();
    await page.locator("button.audio").first().waitFor();
    await page.getByRole("button", { name: "Share" }).click();
    await page.getByText("No other device can reach this host").waitFor();
    onlyProblemsOf(page);
    await page.context().close();
});
