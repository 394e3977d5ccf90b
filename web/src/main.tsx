import { render } from "preact";

import { startTexts } from "./i18n/i18n";
import { host } from "./model/host";
import { App } from "./view/App";
import "./style.css";

async function start(): Promise<void> {
    host.open();
    await startTexts();
    render(<App />, document.getElementById("app")!);
}

void start();
