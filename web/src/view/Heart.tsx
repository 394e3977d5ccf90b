// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import { isFavorite, setFavorite } from "../model/favorites";
import { asRpcError, isMenu } from "../model/menu";
import { announce } from "../model/notices";
import type { Path } from "../model/path";
import { serviceOf } from "../model/services";
import { Icon } from "./icons";
import { errorText } from "./words";

/** A toggle that shows whether the item of a menu is a favorite, and changes it. */
export function Heart({ menu, title }: { menu: Path; title: string }) {
    const [isBusy, setBusy] = useState(false);
    const is = isMenu(menu) ? isFavorite(menu) : null;
    if (is === null)
        return null;
    const change = async () => {
        if (isBusy)
            return;
        setBusy(true);
        try {
            await setFavorite(menu, title, !is);
        } catch (error) {
            announce({ kind: "failed", text: errorText(asRpcError(error)) });
        } finally {
            setBusy(false);
        }
    };
    const label = t("Favorite at %1", serviceOf(menu)?.title ?? "");
    return (
        <button
            type="button"
            class={is ? "round heart on" : "round heart"}
            aria-pressed={is}
            aria-busy={isBusy}
            aria-label={label}
            title={label}
            onClick={() => void change()}
        >
            <Icon shape={is ? "hearted" : "heart"} />
        </button>
    );
}
