// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// A reverse proxy as a house has one: it serves the host's page below a path of its own.
import http from "node:http";
import net from "node:net";

export class Proxy {
    /**
     * Stands before the host at `url`, below `prefix`, which begins with a slash and has none at its end; empty for none.
     * `answer` may answer a request in the host's place, when it returns true; it is given the path behind the prefix.
     */
    static async start(url, { prefix = "", answer = () => false } = {}) {
        const proxy = new Proxy();
        proxy.#target = new URL(url);
        proxy.#prefix = prefix;
        proxy.#server = http.createServer((request, response) => {
            const path = proxy.#inner(request.url);
            proxy.asked.push(`${request.method} ${request.url}`);
            if (path === null)
                return response.writeHead(404).end();
            if (!answer(request, response, path))
                proxy.#pass(request, response, path);
        });
        proxy.#server.on("upgrade", (request, socket) => proxy.#upgrade(request, socket));
        await new Promise((listening) => proxy.#server.listen(0, "127.0.0.1", listening));
        proxy.url = `http://127.0.0.1:${proxy.#server.address().port}${prefix}/`;
        return proxy;
    }

    /** Method and path of each request, in order. */
    asked = [];
    /** Whether requests reach the host. While they do not, they are broken off, and so are open WebSockets. */
    isUp = true;
    /** Whether WebSockets are refused, as by a host that does not know the device. */
    isRefusing = false;

    #target;
    #prefix;
    #server;
    #sockets = new Set();

    /** The path that the host sees; null for one that is not below the prefix. */
    #inner(path) {
        return path.startsWith(this.#prefix + "/") ? path.slice(this.#prefix.length) : null;
    }

    /** The host sees a client of its own machine. */
    #headers({ headers }) {
        const own = { ...headers, host: this.#target.host };
        if (headers.origin)
            own.origin = this.#target.origin;
        return own;
    }

    #pass(request, response, path) {
        if (!this.isUp)
            return request.socket.destroy();
        const onward = http.request(
            { host: this.#target.hostname, port: this.#target.port, path, method: request.method, headers: this.#headers(request) },
            (answer) => {
                response.writeHead(answer.statusCode, answer.headers);
                answer.pipe(response);
            });
        onward.on("error", () => response.destroy());
        request.pipe(onward);
    }

    #upgrade(request, socket) {
        const path = this.#inner(request.url);
        if (path === null || !this.isUp)
            return socket.destroy();
        if (this.isRefusing)
            return socket.end("HTTP/1.1 401 Unauthorized\r\nContent-Length: 0\r\n\r\n");
        const onward = net.connect(this.#target.port, this.#target.hostname, () => {
            const lines = Object.entries(this.#headers(request)).map(([name, value]) => `${name}: ${value}`);
            onward.write([`GET ${path} HTTP/1.1`, ...lines, "", ""].join("\r\n"));
            onward.pipe(socket).pipe(onward);
        });
        for (const each of [socket, onward]) {
            this.#sockets.add(each);
            each.on("error", () => each.destroy());
            each.on("close", () => {
                this.#sockets.delete(each);
                socket.destroy();
                onward.destroy();
            });
        }
    }

    /** Breaks off the open WebSockets. */
    breakOff() {
        for (const socket of this.#sockets)
            socket.destroy();
    }

    async end() {
        this.breakOff();
        this.#server.closeAllConnections();
        await new Promise((closed) => this.#server.close(closed));
    }
}
