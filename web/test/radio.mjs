// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// A radio's answers to the methods for its volume, places, outputs, stars, presets, sleep timer and alarms, for tests of what a
// host cannot be made to do when a test wants it. See docs/rpc.md.

const failed = (message) => ({ error: { code: -32000, message } });
const iso = (time) => new Date(time).toISOString().replace(/\.\d+Z$/, "Z");

export class Radio {
    /** Members of player.state that only a host with these methods has. */
    state = {
        volume: 40, mute: false, position: null, duration: null, seekable: false, behind: 0, output: "auto", outputProblem: "",
    };
    /** When the position was right, in milliseconds. */
    since = Date.now();
    outputs = [{ output: "auto", name: "System default", current: true, available: true }];
    /** Rows that have a star, by their path. */
    stars = new Set();
    presets = new Map();
    ends = null;
    alarms = [];
    missed = [];
    ringing = null;
    calls = [];
    /** Called with each notification. */
    tell = () => {};
    /** What plays, by the host's player.state. */
    playing = { state: 0, title: "", icon: "", path: "" };

    #id = 0;

    /** The members of player.state as they are now. */
    get now() {
        const { position } = this.state;
        const isCounted = position !== null && this.playing.state === 2;
        return { ...this.state, position: isCounted ? position + (Date.now() - this.since) / 1000 : position };
    }

    /** Sets members of the player's state, and tells them. */
    change(members) {
        if ("position" in members)
            this.since = Date.now();
        Object.assign(this.state, members);
        this.tell({ method: "player.changed", params: { ...this.playing, ...this.now } });
    }

    /** Told to every client that something changed. */
    changed(what, params = {}) {
        this.tell({ method: `${what}.changed`, params });
    }

    /** The `result` or `error` of a call; null for a method of another part of the host. */
    answer({ method, params = {} }) {
        const run = this.#methods[method];
        if (!run)
            return null;
        this.calls.push({ method, params });
        const answer = run(params);
        return "error" in answer && answer.error ? answer : { result: answer };
    }

    called(method) {
        return this.calls.filter((call) => call.method === method).map(({ params }) => params);
    }

    #sleep() {
        const isOn = this.ends !== null && this.ends > Date.now();
        return { ends: isOn ? iso(this.ends) : null, left: isOn ? Math.round((this.ends - Date.now()) / 1000) : 0 };
    }

    #kept({ screen, path }) {
        return path !== undefined || screen !== undefined
            ? { title: path ?? screen, icon: "", path: path ?? "" }
            : { title: this.playing.title, icon: this.playing.icon, path: this.playing.path };
    }

    #methods = {
        "player.volume": ({ volume, change = 0, mute }) => {
            const next = Math.max(0, Math.min(100, (volume ?? this.state.volume) + change));
            this.change({ volume: next, mute: mute ?? this.state.mute });
            return { volume: next, mute: this.state.mute };
        },
        "player.mute": ({ mute }) => {
            this.change({ mute: mute ?? !this.state.mute });
            return { volume: this.state.volume, mute: this.state.mute };
        },
        "player.seek": ({ position, offset, live }) => {
            if (live) {
                this.change({ behind: 0 });
            } else if (!this.state.seekable) {
                return failed("This is live: there is nothing to go forward to.");
            } else if (this.state.position !== null) {
                const to = Math.max(0, Math.min(this.state.duration ?? Infinity, position ?? this.now.position + offset));
                this.change({ position: to });
            }
            return { position: this.state.position, behind: this.state.behind };
        },
        "outputs.list": () => ({ outputs: this.outputs }),
        "outputs.choose": ({ output }) => {
            const found = this.outputs.find((each) => each.output === output);
            if (!found?.available)
                return failed("This output is not there.");
            this.outputs = this.outputs.map((each) => ({ ...each, current: each === found }));
            this.change({ output, outputProblem: "" });
            this.changed("outputs");
            return {};
        },
        "favorites.add": (params) => {
            this.stars.add(this.#kept(params).path);
            return { id: "1" };
        },
        "favorites.remove": ({ path }) => {
            this.stars.delete(path ?? this.playing.path);
            return {};
        },
        "favorites.state": ({ path }) => ({ favorite: this.stars.has(path) }),
        "library.export": () => ({
            library: { version: 1, favorites: [...this.stars].map((path) => ({ path })), presets: [...this.presets.values()] },
        }),
        "library.import": ({ library }) => {
            library.favorites.forEach(({ path }) => this.stars.add(path));
            library.presets.forEach((preset) => this.presets.set(preset.number, preset));
            this.changed("presets");
            return { favorites: library.favorites.length, presets: library.presets.length };
        },
        "recents.clear": () => ({}),
        "presets.list": () => ({ presets: [...this.presets.values()] }),
        "presets.save": ({ number, ...row }) => {
            if (row.screen === undefined && this.playing.state === 0)
                return failed("Nothing plays.");
            this.presets.set(number, { number, ...this.#kept(row) });
            this.changed("presets");
            return {};
        },
        "presets.play": ({ number }) => (this.presets.has(number) ? { playId: { id: `preset ${number}` } } : failed("This preset is empty.")),
        "presets.clear": ({ number }) => {
            this.presets.delete(number);
            this.changed("presets");
            return {};
        },
        "sleep.start": ({ minutes }) => {
            this.ends = Date.now() + minutes * 60_000;
            this.changed("sleep", this.#sleep());
            return { ends: iso(this.ends) };
        },
        "sleep.stop": () => {
            this.ends = null;
            this.changed("sleep", this.#sleep());
            return {};
        },
        "sleep.state": () => this.#sleep(),
        "alarms.list": () => ({ alarms: this.alarms, missed: this.missed, ringing: this.ringing }),
        "alarms.set": ({ id, screen, row, path, preset, ...given }) => {
            if (!/^\d\d:\d\d$/.test(given.time))
                return failed("The time is missing.");
            const before = this.alarms.find((each) => each.id === id);
            const kept = preset !== undefined ? this.presets.get(preset)
                : screen === undefined && before ? before : this.#kept({ screen, row, path });
            const { title, icon, path: at } = kept;
            const alarm = {
                ...given, id: id ?? `a${++this.#id}`, title, icon, path: at,
                next: given.enabled ? `2026-11-23T${given.time}:00+01:00` : null,
            };
            this.alarms = [...this.alarms.filter((each) => each !== before), alarm];
            this.changed("alarms");
            return { id: alarm.id, next: alarm.next };
        },
        "alarms.remove": ({ id }) => {
            this.alarms = this.alarms.filter((each) => each.id !== id);
            this.changed("alarms");
            return {};
        },
        "alarms.stop": () => this.#silence(),
        "alarms.snooze": ({ minutes }) => ({ ...this.#silence(), until: iso(Date.now() + minutes * 60_000) }),
        "alarms.dismissMissed": () => {
            this.missed = [];
            this.changed("alarms");
            return {};
        },
    };

    #silence() {
        this.ringing = null;
        this.changed("alarms");
        return {};
    }
}
