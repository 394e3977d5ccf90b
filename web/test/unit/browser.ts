// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// As much of a browser as the models touch when they are loaded.
const nothing = () => {};
const store = new Map<string, string>();
const storage = {
    getItem: (key: string) => store.get(key) ?? null,
    setItem: (key: string, value: string) => void store.set(key, value),
    removeItem: (key: string) => void store.delete(key),
};
Object.assign(globalThis, {
    location: { href: "http://127.0.0.1:1/", host: "127.0.0.1:1", hash: "" },
    history: { state: null, pushState: nothing, replaceState: nothing },
    sessionStorage: storage,
    localStorage: storage,
    window: { addEventListener: nothing, scrollTo: nothing, scrollY: 0 },
});
