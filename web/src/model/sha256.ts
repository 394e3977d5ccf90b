// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// SHA-256 (FIPS 180-4) for pages without TLS, to which browsers give no crypto.subtle.

const blockSize = 64;
const primes: number[] = [];
for (let n = 2; primes.length < 64; ++n) {
    if (primes.every((prime) => n % prime !== 0))
        primes.push(n);
}
/** The first 32 bits of a number's fraction. */
const fraction = (value: number) => Math.floor((value % 1) * 2 ** 32);
const rounds = primes.map((prime) => fraction(Math.cbrt(prime)));
const start = primes.slice(0, 8).map((prime) => fraction(Math.sqrt(prime)));

const turn = (word: number, bits: number) => (word >>> bits) | (word << (32 - bits));

/** The message, a bit of 1, as many of 0 as are needed, and its length in bits, in whole blocks. */
function padded(message: Uint8Array): DataView {
    const size = Math.ceil((message.length + 9) / blockSize) * blockSize;
    const bytes = new Uint8Array(size);
    bytes.set(message);
    bytes[message.length] = 0x80;
    const view = new DataView(bytes.buffer);
    view.setUint32(size - 8, Math.floor(message.length / 2 ** 29));
    view.setUint32(size - 4, message.length * 8);
    return view;
}

function mix(state: number[], words: readonly number[]): number[] {
    let [a, b, c, d, e, f, g, h] = state as [number, number, number, number, number, number, number, number];
    words.forEach((word, i) => {
        const choice = (e & f) ^ (~e & g);
        const first = (h + (turn(e, 6) ^ turn(e, 11) ^ turn(e, 25)) + choice + rounds[i]! + word) | 0;
        const majority = (a & b) ^ (a & c) ^ (b & c);
        const second = ((turn(a, 2) ^ turn(a, 13) ^ turn(a, 22)) + majority) | 0;
        [a, b, c, d, e, f, g, h] = [(first + second) | 0, a, b, c, (d + first) | 0, e, f, g];
    });
    return [a, b, c, d, e, f, g, h].map((word, i) => (word + state[i]!) | 0);
}

/** The digest in hexadecimal digits. */
export function sha256(message: Uint8Array): string {
    const view = padded(message);
    let state = start;
    for (let block = 0; block < view.byteLength; block += blockSize) {
        const words = Array.from({ length: 16 }, (_, i) => view.getUint32(block + 4 * i));
        for (let i = 16; i < 64; ++i) {
            const [w15, w2] = [words[i - 15]!, words[i - 2]!];
            const near = turn(w15, 7) ^ turn(w15, 18) ^ (w15 >>> 3);
            const far = turn(w2, 17) ^ turn(w2, 19) ^ (w2 >>> 10);
            words.push((words[i - 16]! + near + words[i - 7]! + far) | 0);
        }
        state = mix(state, words);
    }
    return state.map((word) => (word >>> 0).toString(16).padStart(8, "0")).join("");
}
