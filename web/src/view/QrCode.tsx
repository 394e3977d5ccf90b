// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useState } from "preact/hooks";

/** Width of the quiet zone, in modules: ISO/IEC 18004 asks for four. */
const quiet = 4;

/** The dark modules as one SVG path, and the number of modules per side. */
async function pathFor(text: string): Promise<{ size: number; shape: string }> {
    const { default: qrcode } = await import("qrcode-generator");
    const code = qrcode(0, "M");
    code.addData(text);
    code.make();
    const size = code.getModuleCount();
    let shape = "";
    for (let row = 0; row < size; ++row) {
        for (let column = 0; column < size; ++column) {
            if (code.isDark(row, column))
                shape += `M${column + quiet} ${row + quiet}h1v1h-1z`;
        }
    }
    return { size: size + 2 * quiet, shape };
}

/** A QR code, dark on light in both themes because not all cameras read inverted ones. */
export function QrCode({ text, label }: { text: string; label: string }) {
    const [drawn, setDrawn] = useState<{ size: number; shape: string } | null>(null);
    useEffect(() => {
        let isCurrent = true;
        pathFor(text).then((code) => isCurrent && setDrawn(code), () => isCurrent && setDrawn(null));
        return () => {
            isCurrent = false;
        };
    }, [text]);
    if (!drawn)
        return null;
    return (
        <svg class="qr" viewBox={`0 0 ${drawn.size} ${drawn.size}`} role="img" aria-label={label} shape-rendering="crispEdges">
            <path d={drawn.shape} />
        </svg>
    );
}
