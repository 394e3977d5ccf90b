// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// A stock Firefox, driven by the protocol that it speaks itself: WebDriver's commands as JSON over TCP (Marionette).
import { spawn } from "node:child_process";
import { mkdtemp, readFile, rm, writeFile } from "node:fs/promises";
import net from "node:net";
import { tmpdir } from "node:os";
import { join } from "node:path";

import { patience } from "./support.mjs";

const startTime = 60_000;
/** WebDriver's name of the member that identifies an element. */
const elementKey = "element-6066-11e4-a52e-4f735466cecf";

const prefs = {
    "marionette.port": 0,
    // Nothing leaves the machine: whatever is not on it is looked for at a proxy that is not there.
    "network.proxy.type": 1,
    "network.proxy.http": "127.0.0.1",
    "network.proxy.http_port": 9,
    "network.proxy.ssl": "127.0.0.1",
    "network.proxy.ssl_port": 9,
    "services.settings.server": "data:,#none",
    "app.normandy.enabled": false,
    "app.update.disabledForTesting": true,
    "browser.safebrowsing.downloads.remote.enabled": false,
    "datareporting.policy.dataSubmissionEnabled": false,
    "network.captive-portal-service.enabled": false,
    "network.connectivity-service.enabled": false,
    "toolkit.telemetry.server": "",
    "intl.accept_languages": "en-US",
};

/** Keys by their WebDriver names, https://www.w3.org/TR/webdriver/#keyboard-actions. */
const keys = { Enter: "\uE007", Escape: "\uE00C" };

export class Firefox {
    /** \a direct names hosts beyond this machine's loopback that it may talk to. */
    static async start({ direct = [] } = {}) {
        const firefox = new Firefox();
        firefox.#profile = await mkdtemp(join(tmpdir(), "vesk-firefox-"));
        const all = { ...prefs, "network.proxy.no_proxies_on": direct.join() };
        const lines = Object.entries(all).map(([name, value]) => `user_pref("${name}", ${JSON.stringify(value)});\n`);
        await writeFile(join(firefox.#profile, "user.js"), lines.join(""));
        // It may look at what the page logged, which is not a page's right.
        firefox.#child = spawn(process.env.VESK_FIREFOX ?? "/usr/bin/firefox-esr",
            ["--headless", "--marionette", "--remote-allow-system-access", "--no-remote", "--profile", firefox.#profile],
            { stdio: "ignore", env: { ...process.env, HOME: firefox.#profile } });
        firefox.#ended = new Promise((ended) => firefox.#child.on("exit", ended));
        process.on("exit", () => firefox.#child.kill("SIGKILL"));
        try {
            await firefox.#connect();
            await firefox.#call("WebDriver:NewSession", { acceptInsecureCerts: true });
            await firefox.#call("WebDriver:SetWindowRect", { width: 1280, height: 900 });
        } catch (error) {
            await firefox.end();
            throw error;
        }
        return firefox;
    }

    #child;
    #ended;
    #profile;
    #socket;
    #bytes = Buffer.alloc(0);
    #id = 0;
    #waiting = new Map();

    async #connect() {
        const end = Date.now() + startTime;
        for (;;) {
            const port = await readFile(join(this.#profile, "MarionetteActivePort"), "utf8").catch(() => "");
            if (port !== "") {
                this.#socket = net.connect(Number(port), "127.0.0.1");
                this.#socket.on("data", (data) => this.#receive(data));
                this.#socket.on("error", () => {});
                this.#socket.on("close", () => {
                    for (const { reject } of this.#waiting.values())
                        reject(new Error("Firefox has ended"));
                });
                return;
            }
            if (Date.now() > end || this.#child.exitCode !== null)
                throw new Error("Firefox did not start");
            await new Promise((later) => setTimeout(later, 50));
        }
    }

    /** A message is its length in bytes, a colon, and JSON: [1, id, error, result]; the greeting is no list. */
    #receive(data) {
        this.#bytes = Buffer.concat([this.#bytes, data]);
        for (;;) {
            const colon = this.#bytes.indexOf(":");
            const end = colon + 1 + Number(this.#bytes.subarray(0, Math.max(0, colon)).toString());
            if (colon < 0 || this.#bytes.length < end)
                return;
            const message = JSON.parse(this.#bytes.subarray(colon + 1, end).toString());
            this.#bytes = this.#bytes.subarray(end);
            if (!Array.isArray(message))
                continue;
            const [, id, error, result] = message;
            const waiting = this.#waiting.get(id);
            this.#waiting.delete(id);
            if (error)
                waiting?.reject(new Error(`${error.error}: ${error.message}`));
            else
                waiting?.resolve(result);
        }
    }

    #call(command, params = {}) {
        const id = ++this.#id;
        const text = JSON.stringify([0, id, command, params]);
        return new Promise((resolve, reject) => {
            this.#waiting.set(id, { resolve, reject });
            this.#socket.write(`${Buffer.byteLength(text)}:${text}`);
        });
    }

    goto(url) {
        return this.#call("WebDriver:Navigate", { url });
    }

    async url() {
        return (await this.#call("WebDriver:GetCurrentURL")).value;
    }

    reload() {
        return this.#call("WebDriver:Refresh");
    }

    /** Runs a function in the page, which may return a promise. */
    async evaluate(run, ...args) {
        const script = `return (${run}).apply(null, arguments);`;
        return (await this.#call("WebDriver:ExecuteScript", { script, args })).value;
    }

    /** The first visible element of a selector that has the text; the text's absence allows any. */
    async #look(selector, text) {
        const script = `return [...document.querySelectorAll(arguments[0])].find((element) => element.checkVisibility()
            && (element.getAttribute("aria-label") ?? "").concat("\\n", element.textContent).includes(arguments[1])) ?? null;`;
        return (await this.#call("WebDriver:ExecuteScript", { script, args: [selector, text] })).value?.[elementKey];
    }

    /** Waits for an element, and returns what the other methods take. */
    async find(selector, text = "") {
        const end = Date.now() + patience;
        for (;;) {
            const id = await this.#look(selector, text);
            if (id)
                return id;
            if (Date.now() > end)
                throw new Error(`there was never ${selector} with “${text}”: ${await this.evaluate(() => document.body.innerText)}`);
            await new Promise((later) => setTimeout(later, 50));
        }
    }

    async click(selector, text = "") {
        await this.#call("WebDriver:ElementClick", { id: await this.find(selector, text) });
    }

    async type(selector, text) {
        await this.#call("WebDriver:ElementSendKeys", { id: await this.find(selector), text });
    }

    /** Presses a key, wherever the focus is. */
    async press(key) {
        const value = keys[key] ?? key;
        await this.#call("WebDriver:PerformActions", { actions: [
            { type: "key", id: "keyboard", actions: [{ type: "keyDown", value }, { type: "keyUp", value }] }] });
    }

    async screenshot(file) {
        const { value } = await this.#call("WebDriver:TakeScreenshot", { full: false });
        await writeFile(file, Buffer.from(value, "base64"));
    }

    /** Errors that pages of \a origin logged: of scripts, of styles and of their policy. */
    async errors(origin) {
        await this.#call("Marionette:SetContext", { value: "chrome" });
        try {
            const script = `return Services.console.getMessageArray()
                .filter((message) => message instanceof Ci.nsIScriptError && message.logLevel === Ci.nsIConsoleMessage.error
                    && (message.sourceName.startsWith(arguments[0]) || /^(CSP|Content Security|Mixed)/.test(message.category)))
                .map((message) => message.category + ": " + message.errorMessage);`;
            return (await this.#call("WebDriver:ExecuteScript", { script, args: [origin], sandbox: "system" })).value;
        } finally {
            await this.#call("Marionette:SetContext", { value: "content" });
        }
    }

    async end() {
        this.#socket?.destroy();
        this.#child.kill("SIGTERM");
        const timer = setTimeout(() => this.#child.kill("SIGKILL"), patience);
        await this.#ended;
        clearTimeout(timer);
        await rm(this.#profile, { recursive: true, force: true, maxRetries: 5 });
    }
}
