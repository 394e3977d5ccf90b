// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// The programs and a browser for one test: started on free ports with a folder of their own, and
// ended with it.
import { spawn } from "node:child_process";
import { mkdtemp, readFile, rm } from "node:fs/promises";
import { tmpdir } from "node:os";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath } from "node:url";

import { chromium } from "playwright-core";

const here = dirname(fileURLToPath(import.meta.url));

/** The build folder, whose programs are tested. */
export const build = resolve(process.env.VESK_BUILD ?? join(here, "../../../build/dev"));
const readyTime = 30_000;
/** Milliseconds within which something happens on the busiest machine, if it ever does. */
export const patience = 30_000;
/**
 * How many times slower the browser runs, for a search of tests that depend on speed. Each message between the page and its
 * host is then late, too, by up to that many times 100 milliseconds.
 */
const slowness = Number(process.env.VESK_TEST_SLOWNESS ?? 1);

/** What still runs, so that nothing does once this has ended, however that came. */
const running = new Set();
process.on("exit", () => {
    for (const child of running)
        child.kill("SIGKILL");
});

/** Collects what a program prints, and waits for lines of it. */
class Program {
    output = "";
    errors = "";
    #child;
    #ended;

    constructor(name, args) {
        this.#child = spawn(join(build, "bin", name), args, { stdio: ["ignore", "pipe", "pipe"] });
        running.add(this.#child);
        this.#child.stdout.on("data", (data) => (this.output += data));
        this.#child.stderr.on("data", (data) => (this.errors += data));
        this.#ended = new Promise((done) => {
            this.#child.on("error", (error) => {
                this.errors += error.message;
                done();
            });
            this.#child.on("exit", () => {
                running.delete(this.#child);
                done();
            });
        });
        this.hasEnded = false;
        void this.#ended.then(() => (this.hasEnded = true));
    }

    /** The first group of the pattern, once it was printed. */
    async printed(pattern, stream = "output") {
        const end = Date.now() + readyTime;
        for (;;) {
            const match = this[stream].match(pattern);
            if (match)
                return match[1];
            if (this.hasEnded || Date.now() > end)
                throw new Error(`it never said ${pattern}: ${this.errors}`);
            await new Promise((later) => setTimeout(later, 20));
        }
    }

    async end() {
        this.#child.kill("SIGTERM");
        const timer = setTimeout(() => this.#child.kill("SIGKILL"), 20_000);
        await this.#ended;
        clearTimeout(timer);
    }
}

function run(command, args) {
    return new Promise((done, failed) => {
        const child = spawn(command, args, { stdio: ["ignore", "ignore", "pipe"] });
        let errors = "";
        child.stderr.on("data", (data) => (errors += data));
        child.on("exit", (code) => (code === 0 ? done() : failed(new Error(errors))));
    });
}

/** A certificate for the directory's names, which is its own authority. */
async function certificate(folder) {
    const [cert, key] = [join(folder, "cert.pem"), join(folder, "key.pem")];
    await run("openssl", ["req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
        "-nodes", "-keyout", key, "-out", cert, "-days", "2", "-subj", "/CN=opml.radiotime.com",
        "-addext", "subjectAltName=DNS:opml.radiotime.com",
        "-addext", "basicConstraints=critical,CA:TRUE"]);
    return { cert, key };
}

/** A directory, a host and what talks to them. */
export class Product {
    static async start({ directoryArgs = [], hostArgs = [] } = {}) {
        const product = new Product();
        product.folder = await mkdtemp(join(tmpdir(), "vesk-page-"));
        try {
            const { cert, key } = await certificate(product.folder);
            product.requests = join(product.folder, "requests.log");
            product.directory = new Program("tunein-directory", ["--listen", "127.0.0.1:0",
                "--tls-listen", "127.0.0.1:0", "--cert", cert, "--key", key,
                "--request-log", product.requests, ...directoryArgs]);
            const plain = await product.directory.printed(/ready at http:\/\/([^/]*)\//);
            const secure = await product.directory.printed(/https:\/\/([^/]*)\//, "errors");
            product.directoryUrl = `http://${plain}`;
            product.#hostArgs = [
                "--plugin", join(build, "lib/vesk/plugins/libvesk_cb_tunein.so"),
                "--state-dir", join(product.folder, "state"), "--audio", "null", "--ca-file", cert,
                "--connect-to", `opml.radiotime.com:80:${plain}`,
                "--connect-to", `opml.radiotime.com:443:${secure}`,
                "--set", "network:connected=true", "--set", "settings:tunein/partnerId=test",
                ...(process.env.VESK_TEST_IN_PROCESS ? ["--in-process"] : []), ...hostArgs];
            await product.startHost();
        } catch (error) {
            await product.end();
            throw error;
        }
        return product;
    }

    #hostArgs = [];

    /** Starts the host, on the port that it had before. */
    async startHost() {
        this.host = new Program("vesk-host", ["--listen", `127.0.0.1:${this.port ?? 0}`, ...this.#hostArgs]);
        this.url = await this.host.printed(/ready at (\S+)/);
        this.port = new URL(this.url).port;
    }

    async call(method, params) {
        const answer = await fetch(this.url + "jsonrpc", {
            method: "POST",
            headers: { "Content-Type": "application/json" },
            body: JSON.stringify({ jsonrpc: "2.0", id: 1, method, params }),
        });
        const { result, error } = await answer.json();
        if (error)
            throw Object.assign(new Error(error.message), error);
        return result;
    }

    async fault(...faults) {
        const answer = await fetch(this.directoryUrl + "/_faults", { method: "POST", body: JSON.stringify(faults) });
        if (!answer.ok)
            throw new Error(await answer.text());
    }

    async noFaults() {
        await fetch(this.directoryUrl + "/_faults", { method: "DELETE" });
    }

    async requestLines() {
        return (await readFile(this.requests, "utf8")).split("\n").filter((line) => line !== "");
    }

    async end() {
        await this.host?.end();
        await this.directory?.end();
        await rm(this.folder, { recursive: true, force: true });
    }
}

export function launch() {
    return chromium.launch({
        executablePath: process.env.VESK_CHROMIUM ?? "/usr/bin/chromium",
        args: process.getuid() === 0 ? ["--no-sandbox"] : [],
    });
}

/** A page that fails the test when it logs an error, or asks for anything that is not the host's. */
export async function newPage(browser, product, options = {}) {
    const context = await browser.newContext({
        viewport: { width: 1280, height: 800 }, reducedMotion: "reduce", locale: "en-US", ...options,
    });
    const page = await context.newPage();
    page.setDefaultTimeout(patience);
    if (slowness > 1)
        await slowDown(page);
    page.problems = [];
    page.on("pageerror", (error) => page.problems.push(error.stack));
    page.on("console", (message) => {
        const isExpected = /Failed to load resource|WebSocket connection/.test(message.text());
        if (message.type() === "error" && !isExpected)
            page.problems.push(message.text());
    });
    page.on("request", (request) => {
        if (new URL(request.url()).origin !== new URL(product.url).origin)
            page.problems.push(`asked for ${request.url()}`);
    });
    page.on("dialog", (dialog) => {
        page.problems.push(`a dialog: ${dialog.message()}`);
        void dialog.dismiss();
    });
    return page;
}

async function slowDown(page) {
    const devtools = await page.context().newCDPSession(page);
    await devtools.send("Emulation.setCPUThrottlingRate", { rate: slowness });
    await between(page, {});
}

/** Passes messages on in their order, late. */
function delayed(send) {
    let before = Promise.resolve();
    return (message) => {
        const time = new Promise((over) => setTimeout(over, Math.random() * slowness * 100));
        before = Promise.all([before, time]).then(() => send(message));
    };
}

/** Waits for a condition. */
export async function expectEventually(condition, what) {
    const end = Date.now() + patience;
    while (!(await condition())) {
        if (Date.now() > end)
            throw new Error(`there was never ${what}`);
        await new Promise((later) => setTimeout(later, 50));
    }
}

/** Presses keys as quickly as a hand does: on a busy machine a browser's driver takes a second from one to the next. */
export function pressQuickly(page, ...keys) {
    return page.evaluate(async (pressed) => {
        for (const key of pressed) {
            const code = /^\d$/.test(key) ? `Digit${key}` : key;
            document.activeElement.dispatchEvent(new KeyboardEvent("keydown", { key, code, bubbles: true, cancelable: true }));
            // The page draws what the key changed.
            await new Promise((later) => setTimeout(later));
        }
    }, keys);
}

/** Fails with what went wrong in the page, but for what the pattern allows. */
export function onlyProblemsOf(page, allowed = /$^/) {
    const problems = page.problems.filter((problem) => !allowed.test(problem));
    if (problems.length > 0)
        throw new Error(problems.join("\n"));
}

/**
 * Stands between the page and its host. `call` sees each call and may answer it in the host's place,
 * when it returns true, now or later, or let it pass then; `answered` may change an answer, and `told` a
 * notification. After that `page.tell` sends the page a notification.
 */
export async function between(page, { call = () => false, answered = () => {}, told = () => {} }) {
    await page.routeWebSocket(/\/ws$/, (socket) => {
        const server = socket.connectToServer();
        const [toServer, toPage] = [(text) => server.send(text), (text) => socket.send(text)].map(
            (send) => (slowness > 1 ? delayed(send) : send));
        const calls = new Map();
        page.tell = (message) => toPage(JSON.stringify({ jsonrpc: "2.0", ...message }));
        socket.onMessage((text) => {
            const message = JSON.parse(text);
            calls.set(message.id, message);
            const answer = (rest) => toPage(JSON.stringify({ jsonrpc: "2.0", id: message.id, ...rest }));
            if (!call(message, answer, () => toServer(text)))
                toServer(text);
        });
        server.onMessage((text) => {
            const message = JSON.parse(text);
            const asked = calls.get(message.id);
            if (asked) {
                calls.delete(message.id);
                answered(asked, message);
            } else {
                told(message);
            }
            toPage(JSON.stringify(message));
        });
    });
}

/** A finger finds each control: it is 44 pixels large, or as much around its middle is the control, too, or a label of it. */
export async function checkTargets(page, what) {
    const small = await page.evaluate(() => {
        const found = [];
        const isInText = (element) => element.matches("p > a") && getComputedStyle(element).display === "inline";
        for (const element of document.querySelectorAll("button, a[href], input, select")) {
            const isHere = element.checkVisibility({ visibilityProperty: true, opacityProperty: true })
                && !element.closest("[inert]") && (!document.querySelector("dialog[open]") || element.closest("dialog[open]"));
            if (!isHere || element.matches(".skip, [type=file]") || isInText(element))
                continue;
            element.scrollIntoView({ block: "center", inline: "center" });
            const { left, top, width, height } = element.getBoundingClientRect();
            const [x, y] = [left + width / 2, top + height / 2];
            // One that is drawn large enough is only not to be covered; hits are rounded to whole pixels.
            const reach = width >= 44 && height >= 44 ? 20 : 21.5;
            const misses = [[-reach, 0], [reach, 0], [0, -reach], [0, reach]].filter(([dx, dy]) => {
                const hit = document.elementFromPoint(x + dx, y + dy);
                const label = hit?.closest("label");
                return !element.contains(hit) && label?.control !== element;
            });
            if (misses.length > 0) {
                const [dx, dy] = misses[0];
                const hit = document.elementFromPoint(x + dx, y + dy)?.outerHTML.slice(0, 60);
                found.push(`${element.outerHTML.slice(0, 160)} (${Math.round(width)} by ${Math.round(height)}): ${hit}`);
            }
        }
        scrollTo(0, 0);
        return found;
    });
    if (small.length > 0)
        throw new Error(`${what}: too small for a finger: ${small.join("\n")}`);
}

/** Lets a radio of radio.mjs answer, in the host's place, what it has methods for. */
export async function withRadio(page, radio) {
    const join = (state) => {
        radio.playing = { ...state };
        Object.assign(state, radio.now);
    };
    await between(page, {
        call: (message, answer) => {
            const found = radio.answer(message);
            if (found)
                answer(found);
            return found !== null;
        },
        answered: ({ method }, { result }) => method === "player.state" && result && join(result),
        told: ({ method, params }) => method === "player.changed" && join(params),
    });
    radio.tell = (message) => page.tell(message);
}
