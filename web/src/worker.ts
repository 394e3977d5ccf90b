// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// The service worker: keeps the files of one build of the page, its shell, for the time when the host is away. What the
// host says (rows, pictures, calls) is never kept, and whatever the host itself can serve comes from it.

/** The shell's files, relative to the page, and the name of this build. The build defines them. */
declare const SHELL: readonly string[];
declare const BUILD: string;

/** As much of a service worker as is used here; the library of types for pages does not have it. */
interface ExtendableEvent extends Event {
    waitUntil(done: Promise<unknown>): void;
}
interface FetchEvent extends ExtendableEvent {
    readonly request: Request;
    respondWith(response: Promise<Response>): void;
}
interface Worker {
    readonly registration: { readonly scope: string };
    readonly clients: { claim(): Promise<void> };
    skipWaiting(): Promise<void>;
    addEventListener(type: "install" | "activate", heard: (event: ExtendableEvent) => void): void;
    addEventListener(type: "fetch", heard: (event: FetchEvent) => void): void;
}

const worker = self as unknown as Worker;
const { scope } = worker.registration;
/** Pages below other paths of the same server have caches of their own. */
const ownCaches = `vesk ${scope} `;
const cacheName = ownCaches + BUILD;
const page = "./";

const urlOf = (name: string) => new URL(name, scope).href;

async function install(): Promise<void> {
    const cache = await caches.open(cacheName);
    await cache.addAll(SHELL.map((name) => new Request(urlOf(name), { cache: "no-cache" })));
    await worker.skipWaiting();
}

async function activate(): Promise<void> {
    for (const name of await caches.keys()) {
        if (name.startsWith(ownCaches) && name !== cacheName)
            await caches.delete(name);
    }
    await worker.clients.claim();
}

/** The file of the shell that a request is for; null for all else, which is none of the worker's business. */
function nameOf(request: Request): string | null {
    const url = new URL(request.url);
    url.hash = "";
    if (request.method !== "GET" || !url.href.startsWith(scope))
        return null;
    if (request.mode === "navigate")
        return [scope, urlOf("index.html")].includes(url.href) ? page : null;
    return SHELL.find((name) => name !== page && urlOf(name) === url.href) ?? null;
}

/** A proxy says so when the host behind it is away. */
const isAway = (response: Response) => response.status >= 502 && response.status <= 504;

async function fromHost(request: Request, name: string): Promise<Response> {
    const kept = () => caches.open(cacheName).then((cache) => cache.match(urlOf(name)));
    try {
        const response = await fetch(request);
        return isAway(response) ? (await kept()) ?? response : response;
    } catch (error) {
        const response = await kept();
        if (!response)
            throw error;
        return response;
    }
}

worker.addEventListener("install", (event) => event.waitUntil(install()));
worker.addEventListener("activate", (event) => event.waitUntil(activate()));
worker.addEventListener("fetch", (event) => {
    const name = nameOf(event.request);
    if (name !== null)
        event.respondWith(fromHost(event.request, name));
});
