// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Draws the page's icon (public/favicon.svg) as a PNG, which is what installing a page needs.
import { deflateSync } from "node:zlib";

const background = [0x0b, 0x6e, 0x63];
/** The favicon's view box, the radius of its corners, and its strokes, which are vertical with round ends: x, y, length. */
const grid = 32;
const corner = 8;
const strokes = [[8, 12.5, 7], [13.3, 8.5, 15], [18.7, 11, 10], [24, 13.5, 5]];
const strokeRadius = 1.3;

/** Distance of a point from the nearest stroke's edge, negative inside. */
function toStrokes(x, y) {
    return Math.min(...strokes.map(([at, top, length]) => (
        Math.hypot(x - at, y - Math.min(top + length, Math.max(top, y))) - strokeRadius)));
}

/** Distance of a point from the edge of the square with its round corners, negative inside. */
function toSquare(x, y) {
    const [dx, dy] = [x, y].map((each) => Math.abs(each - grid / 2) - (grid / 2 - corner));
    return Math.hypot(Math.max(dx, 0), Math.max(dy, 0)) + Math.min(Math.max(dx, dy), 0) - corner;
}

const crcTable = Array.from({ length: 256 }, (_, n) => {
    for (let bit = 0; bit < 8; ++bit)
        n = n & 1 ? 0xedb88320 ^ (n >>> 1) : n >>> 1;
    return n >>> 0;
});

function crc32(bytes) {
    return (bytes.reduce((crc, byte) => crcTable[(crc ^ byte) & 0xff] ^ (crc >>> 8), 0xffffffff) ^ 0xffffffff) >>> 0;
}

function chunk(type, data) {
    const body = Buffer.concat([Buffer.from(type, "latin1"), data]);
    const framed = Buffer.alloc(body.length + 8);
    framed.writeUInt32BE(data.length, 0);
    body.copy(framed, 4);
    framed.writeUInt32BE(crc32(body), body.length + 4);
    return framed;
}

/** A PNG of \a size by \a size pixels; if \a isMaskable, without corners, because the system cuts out its own shape. */
export function icon(size, isMaskable) {
    const cover = (distance) => Math.min(1, Math.max(0, 0.5 - distance * size / grid));
    const lines = Buffer.alloc(size * (1 + 4 * size));
    for (let row = 0; row < size; ++row) {
        // A line begins with the number of its filter: none.
        for (let column = 0; column < size; ++column) {
            const [x, y] = [(column + 0.5) * grid / size, (row + 0.5) * grid / size];
            const stroke = cover(toStrokes(x, y));
            const at = row * (1 + 4 * size) + 1 + 4 * column;
            for (let i = 0; i < 3; ++i)
                lines[at + i] = Math.round(background[i] + (255 - background[i]) * stroke);
            lines[at + 3] = isMaskable ? 255 : Math.round(255 * cover(toSquare(x, y)));
        }
    }
    const header = Buffer.alloc(13);
    header.writeUInt32BE(size, 0);
    header.writeUInt32BE(size, 4);
    header.set([8, 6, 0, 0, 0], 8); // eight bits each of red, green, blue and opacity
    return Buffer.concat([
        Buffer.from([0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a]),
        chunk("IHDR", header), chunk("IDAT", deflateSync(lines, { level: 9 })), chunk("IEND", Buffer.alloc(0)),
    ]);
}
