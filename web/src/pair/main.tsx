// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { render } from "preact";

import { startTexts } from "../i18n/i18n";
import { startTheme } from "../model/theme";
import { PairPage } from "./PairPage";
import { codeInFragment } from "./pairing";
import "../style.css";

async function start(): Promise<void> {
    startTheme();
    const code = codeInFragment(location.hash);
    const isForgotten = location.hash === "#forgotten";
    // The code is not left behind in the address and in the browser's history.
    if (location.hash !== "")
        history.replaceState(null, "", location.pathname + location.search);
    await startTexts();
    // This script lies in "pair/", beside the page.
    const base = new URL("../", import.meta.url);
    render(<PairPage base={base} code={code} isForgotten={isForgotten} />, document.getElementById("app")!);
}

void start();
