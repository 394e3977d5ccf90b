// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

interface TrustedTypes {
    createPolicy(name: string, rules: { createScriptURL(url: string): string }): { createScriptURL(url: string): unknown };
}

const workerUrl = "./worker.js";

/** The worker's address as a type that the page's policy trusts, where browsers know such types. */
function trustedUrl(): string {
    const { trustedTypes } = window as { trustedTypes?: TrustedTypes };
    const policy = trustedTypes?.createPolicy("vesk", {
        createScriptURL: (url) => {
            if (url !== workerUrl)
                throw new TypeError("not a script of this page's");
            return url;
        },
    });
    return policy ? (policy.createScriptURL(workerUrl) as string) : workerUrl;
}

/** Registers the service worker, with which the page can be installed and opens while the host is away. */
export function startWorker(): void {
    // There is none on a page without TLS that is not the machine's own.
    if (!("serviceWorker" in navigator))
        return;
    addEventListener("load", () => {
        // Refused for a certificate that the browser does not trust: then the page is one like any other.
        navigator.serviceWorker.register(trustedUrl(), { updateViaCache: "none" }).catch(() => {});
    });
}
