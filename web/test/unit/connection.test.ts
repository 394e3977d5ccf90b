// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import assert from "node:assert/strict";
import { beforeEach, test } from "node:test";

import { Connection, reconnectDelay, RpcError } from "../../src/rpc/Connection";

class FakeSocket {
    static readonly OPEN = 1;
    static all: FakeSocket[] = [];
    readyState = 0;
    sent: Record<string, unknown>[] = [];
    onopen = () => {};
    onclose = () => {};
    onmessage = (_event: { data: string }) => {};

    constructor(readonly url: string) {
        FakeSocket.all.push(this);
    }

    send(text: string): void {
        this.sent.push(JSON.parse(text));
    }

    open(): void {
        this.readyState = 1;
        this.onopen();
    }

    close(): void {
        this.readyState = 3;
        this.onclose();
    }

    receive(message: unknown): void {
        this.onmessage({ data: JSON.stringify(message) });
    }
}

beforeEach(() => {
    FakeSocket.all = [];
    Object.assign(globalThis, { WebSocket: FakeSocket });
});

function opened(): [Connection, FakeSocket] {
    const connection = new Connection("ws://x/ws");
    connection.open();
    FakeSocket.all[0]!.open();
    return [connection, FakeSocket.all[0]!];
}

test("answers find their calls, in whatever order they come", async () => {
    const [connection, socket] = opened();
    const [first, second] = [connection.call("a"), connection.call("b", { x: 1 })];
    assert.deepEqual(socket.sent[1], { jsonrpc: "2.0", id: 2, method: "b", params: { x: 1 } });
    socket.receive({ id: 2, result: "two" });
    socket.receive({ id: 1, result: "one" });
    assert.deepEqual(await Promise.all([first, second]), ["one", "two"]);
});

test("an error is handed on with what it is for", async () => {
    const [connection, socket] = opened();
    const call = connection.call("a");
    socket.receive({ id: 1, error: { code: -32000, message: "no", data: { name: "err:7", title: "T" } } });
    await assert.rejects(call, (error: RpcError) =>
        error.code === -32000 && error.message === "no" && error.name === "err:7" && error.title === "T");
});

test("what the host knows of a service is told in place of the service's error", async () => {
    const [connection, socket] = opened();
    const call = connection.call("a");
    socket.receive({ id: 1, error: { code: -32000, message: "no", data: { name: "n", problem: "It is down." } } });
    await assert.rejects(call, (error: RpcError) => error.message === "It is down." && error.name === "n");
});

test("a request that is not wanted any more is taken back", async () => {
    const [connection, socket] = opened();
    const aborter = new AbortController();
    const call = connection.call("a", {}, aborter.signal);
    const other = connection.call("b", {}, aborter.signal);
    socket.receive({ id: 2, result: "two" });
    await other;
    aborter.abort();
    await assert.rejects(call, (error: RpcError) => error.code === RpcError.cancelled);
    assert.deepEqual(socket.sent.slice(2), [{ jsonrpc: "2.0", method: "cancel", params: { id: 1 } }]);
    // The host's late word is for nobody.
    socket.receive({ id: 1, error: { code: -32006, message: "The request was cancelled." } });
});

test("notifications reach those who listen", () => {
    const [connection, socket] = opened();
    const heard: unknown[] = [];
    connection.on("changed", (params) => heard.push(params));
    socket.receive({ method: "changed", params: { path: "A:b" } });
    socket.receive({ method: "other", params: {} });
    socket.receive({ id: 99, result: null });
    socket.receive([1]);
    assert.deepEqual(heard, [{ path: "A:b" }]);
});

test("when the connection goes, its calls end and it comes back by itself", async () => {
    const [connection, socket] = opened();
    const call = connection.call("a");
    socket.close();
    await assert.rejects(call, (error: RpcError) => error.code === RpcError.lost);
    assert.equal(connection.isOpen.value, false);
    await assert.rejects(connection.call("b"));
    await new Promise<void>((came) => {
        Object.assign(globalThis, {
            WebSocket: class extends FakeSocket {
                constructor(url: string) {
                    super(url);
                    came();
                }
            },
        });
    });
    FakeSocket.all[1]!.open();
    assert.equal(connection.isOpen.value, true);
});

test("somebody in a hurry does not wait for the next attempt", () => {
    const [connection, socket] = opened();
    connection.hurry();
    assert.equal(FakeSocket.all.length, 1);
    socket.close();
    connection.hurry();
    assert.equal(FakeSocket.all.length, 2);
    FakeSocket.all[1]!.open();
    assert.equal(connection.isOpen.value, true);
});

test("attempts that fail are counted until one succeeds", () => {
    const [connection, socket] = opened();
    assert.equal(connection.failures.value, 0);
    socket.close();
    assert.equal(connection.failures.value, 1);
    connection.hurry();
    FakeSocket.all[1]!.close();
    assert.equal(connection.failures.value, 2);
    connection.hurry();
    FakeSocket.all[2]!.open();
    assert.equal(connection.failures.value, 0);
});

test("it waits longer from time to time, but not for ever", () => {
    assert.equal(reconnectDelay(0), 250);
    assert.equal(reconnectDelay(2), 1000);
    assert.equal(reconnectDelay(100), 5000);
});
