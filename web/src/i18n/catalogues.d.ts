// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// The build makes this module from translations/*.ts; see catalogues.mjs.
declare module "vesk:catalogues" {
    export type Catalogue = Readonly<Record<string, string | readonly string[]>>;
    export const catalogues: Readonly<Record<string, () => Promise<{ default: Catalogue }>>>;
}
