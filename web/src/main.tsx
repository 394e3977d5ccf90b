// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { render } from "preact";

import { startTexts } from "./i18n/i18n";
import { host } from "./model/host";
import { startTheme } from "./model/theme";
import { App } from "./view/App";
import { guardFocus } from "./view/focus";
import "./style.css";

async function start(): Promise<void> {
    startTheme();
    guardFocus();
    host.open();
    await startTexts();
    render(<App />, document.getElementById("app")!);
}

void start();
