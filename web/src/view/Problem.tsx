// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { t } from "../i18n/i18n";
import type { Screen } from "../model/Screen";
import { openHome } from "../model/services";
import { RpcError } from "../rpc/Connection";
import { Icon } from "./icons";
import { errorText } from "./words";

/** The screen's error: in place of rows, or as an overlay above outdated rows, which it does not move. */
export function Problem({ screen }: { screen: Screen }) {
    const error = screen.error.value;
    if (!error)
        return null;
    if (error.code === RpcError.notOffered)
        return <Refused />;
    const again = (
        <button type="button" class="filled" onClick={() => screen.retry()}>{t("Try again")}</button>
    );
    if ((screen.count.value ?? 0) > 0) {
        return (
            <div class="over" role="alert">
                <div class="bubble"><Icon shape="alert" /><p dir="auto">{errorText(error)}</p>{again}</div>
            </div>
        );
    }
    return (
        <div class="blank" role="alert">
            <Icon shape="alert" />
            <p dir="auto">{errorText(error)}</p>
            {again}
        </div>
    );
}

/** Explains that the host refused an address from elsewhere because it would change something. */
function Refused() {
    return (
        <div class="blank" role="alert">
            <Icon shape="alert" />
            <p>{t("This link would change something, so it was not opened.")}</p>
            <p>{t("What changes something is only done from a list or a menu that offers it.")}</p>
            <button type="button" class="filled" onClick={openHome}>{t("Start page")}</button>
        </div>
    );
}

/** Says that the service is slow and offers to cancel; after that, offers another try. */
export function Slow({ screen }: { screen: Screen }) {
    if (screen.isCancelled.value) {
        return (
            <div class="note" role="status">
                <p>{t("Cancelled.")}</p>
                <button type="button" onClick={() => screen.retry()}>{t("Try again")}</button>
            </div>
        );
    }
    return (
        <div class="note" role="status">
            {screen.isSlow.value && (
                <>
                    <p>{t("The service takes long to answer.")}</p>
                    <button type="button" onClick={() => screen.cancel()}>{t("Cancel")}</button>
                </>
            )}
        </div>
    );
}
