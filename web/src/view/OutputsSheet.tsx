// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useRef, useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import { asRpcError } from "../model/menu";
import { chooseOutput, listOutputs, watchOutputs, type Output } from "../model/outputs";
import { player } from "../model/player";
import type { RpcError } from "../rpc/Connection";
import { Icon } from "./icons";
import { errorText } from "./words";

/** Where the sound can go, and where it goes. One that is not there is shown, but not chosen. */
export function OutputsSheet() {
    const [outputs, setOutputs] = useState<readonly Output[] | null>(null);
    const [error, setError] = useState<RpcError | null>(null);
    const [asked, setAsked] = useState("");
    const run = useRef(0);
    const load = async () => {
        const mine = ++run.current;
        try {
            const found = await listOutputs();
            if (mine !== run.current)
                return;
            setOutputs(found);
            setError(null);
        } catch (reason) {
            if (mine === run.current)
                setError(asRpcError(reason));
        }
    };
    useEffect(() => {
        void load();
        const stop = watchOutputs(() => void load());
        return () => {
            ++run.current;
            stop();
        };
    }, []);
    const choose = async ({ output, isAvailable, isCurrent }: Output) => {
        if (!isAvailable || isCurrent || asked !== "")
            return;
        setAsked(output);
        try {
            await chooseOutput(output);
            await load();
        } catch (reason) {
            setError(asRpcError(reason));
        }
        setAsked("");
    };
    const { outputProblem } = player.value;
    return (
        <div>
            <div role="alert">
                {error && <p class="bad in-sheet" dir="auto">{errorText(error)}</p>}
                {!error && outputProblem !== "" && <p class="bad in-sheet" dir="auto">{outputProblem}</p>}
            </div>
            {outputs === null && !error && <p class="blank" role="status">{t("Loading")}</p>}
            {outputs?.length === 0 && <p class="blank">{t("There is nothing here.")}</p>}
            <ul class="menu-rows" role="list">
                {(outputs ?? []).map((each) => (
                    <li key={each.output}>
                        <div class="row">
                            <button
                                type="button"
                                class={each.isAvailable ? "body activate" : "body activate unavailable"}
                                data-main
                                aria-current={each.isCurrent ? "true" : undefined}
                                aria-disabled={!each.isAvailable}
                                aria-busy={asked === each.output}
                                onClick={() => void choose(each)}
                            >
                                <span class={each.isCurrent ? "tool on" : "tool"}><Icon shape={each.isCurrent ? "check" : "speaker"} /></span>
                                <span class="texts">
                                    <span class="title" dir="auto">{each.name}</span>
                                    {each.name !== each.output && <span class="description" dir="ltr">{each.output}</span>}
                                </span>
                                {!each.isAvailable && <span class="badge">{t("Unavailable")}</span>}
                            </button>
                        </div>
                    </li>
                ))}
            </ul>
        </div>
    );
}
