// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/** The rows visible `scrolled` pixels into the list, with a few spare ones above and below. */
export function rowsInSight(
    scrolled: number, sight: number, height: number, count: number, spare: number,
): { first: number; last: number } {
    const row = (y: number) => Math.floor(y / height);
    const last = Math.max(0, count - 1);
    const clamp = (index: number) => Math.max(0, Math.min(last, index));
    return { first: clamp(row(scrolled) - spare), last: clamp(row(scrolled + sight) + spare) };
}
