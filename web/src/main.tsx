// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { render } from "preact";

import { startTexts } from "./i18n/i18n";
import { host } from "./model/host";
import { startWorker } from "./model/install";
import { followLanguage } from "./model/language";
import { startLockScreen } from "./model/lockScreen";
import { startGoesOn } from "./model/position";
import { startPresence } from "./model/presence";
import { startTheme } from "./model/theme";
import { App } from "./view/App";
import { guardFocus } from "./view/focus";
import "./style.css";

async function start(): Promise<void> {
    startTheme();
    guardFocus();
    startPresence();
    startWorker();
    followLanguage();
    startLockScreen();
    startGoesOn();
    host.open();
    await startTexts();
    render(<App />, document.getElementById("app")!);
}

void start();
