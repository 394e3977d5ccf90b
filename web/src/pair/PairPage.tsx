// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useRef, useState } from "preact/hooks";

import { t, tn } from "../i18n/i18n";
import { Icon } from "../view/icons";
import { codeLength, deviceName, digitsIn, maxName, pair, type Outcome } from "./pairing";

interface Props {
    /** Where the host's page lies. */
    base: URL;
    /** The code that came with the address; empty without one. */
    code: string;
    /** The page was left because the host no longer takes this device's token. */
    isForgotten: boolean;
}

function failureText(outcome: Outcome): string {
    switch (outcome.is) {
        case "wrongCode":
            return [t("This is not the code."), tn("%n attempt is left.", "%n attempts are left.", outcome.left)].join(" ");
        case "ended":
            return t("The code was wrong too often, so this pairing has ended. Let a new code be shown.");
        case "closed":
            return t("No device can be paired right now: a code is valid for two minutes. Let a new one be shown.");
        case "invalid":
            return t("The host does not take this code or this name.");
        case "notSaved":
            return t("The host could not write to its disk, so this device is not paired. Its log says why.");
        case "unreachable":
            return t("The host cannot be reached.");
        case "other":
            return t("The host refused this (HTTP %1). Wait a moment, and try again.", outcome.status);
        default:
            return "";
    }
}

/** What the connection is worth, and how to find out whose it is. */
function Trust() {
    if (location.protocol !== "https:") {
        return (
            <section class="card" aria-labelledby="trust">
                <h2 id="trust">{t("This connection is not encrypted")}</h2>
                <p>{t("Everybody in the same network can read along, and use what they read. Go on only in a network that you trust.")}</p>
            </section>
        );
    }
    return (
        <section class="card" aria-labelledby="trust">
            <h2 id="trust">{t("Did your browser warn you?")}</h2>
            <p>{t("The connection is encrypted. But the host has made its certificate itself, so your browser cannot know whether it talks to your host or to somebody in between.")}</p>
            <p>{t("You can: a fingerprint is shown beside the code. Compare it with the certificate's SHA-256 fingerprint, which your browser shows in the details of the warning or behind the sign beside the address.")}</p>
            <p class="strong">{t("If they differ, do not enter the code.")}</p>
            <p class="quiet-text">{t("Without a warning, there is nothing to compare.")}</p>
        </section>
    );
}

/** Lets this device in: asks for the code that a paired device or the machine itself shows. */
export function PairPage({ base, code: broughtCode, isForgotten }: Props) {
    const [code, setCode] = useState(broughtCode);
    const [name, setName] = useState(() => deviceName(navigator.userAgent, navigator.maxTouchPoints));
    const [outcome, setOutcome] = useState<Outcome | null>(null);
    const [isBusy, setBusy] = useState(false);
    const codeField = useRef<HTMLInputElement>(null);
    const isReady = code.length === codeLength && name.trim() !== "" && !isBusy;
    const title = t("Pair this device");
    useEffect(() => {
        document.title = `${title} – Vesk`;
    }, [title]);
    const submit = async () => {
        if (!isReady)
            return codeField.current?.focus();
        setBusy(true);
        setOutcome(null);
        const became = await pair(base, code, name.trim());
        if (became.is === "paired")
            return location.replace(base);
        setOutcome(became);
        setBusy(false);
        if (became.is !== "unreachable")
            setCode("");
        codeField.current?.focus();
    };
    return (
        <main class="pair">
            <p class="brand"><Icon shape="radio" /><span>Vesk</span></p>
            <h1>{title}</h1>
            {isForgotten && (
                <p class="forgotten" role="status"><Icon shape="alert" /> {t("The host does not know this device any more. It can be paired anew.")}</p>
            )}
            <p>{t("The host lets in only devices that it knows. A code is shown where somebody chooses “Pair a device” on a paired device, or runs “veskctl pair” on the machine itself.")}</p>
            <Trust />
            <form
                class="card"
                onSubmit={(event) => {
                    event.preventDefault();
                    void submit();
                }}
            >
                <label>
                    {t("Code")}
                    <input
                        ref={codeField}
                        class="digits"
                        type="text"
                        name="code"
                        inputMode="numeric"
                        autocomplete="one-time-code"
                        spellcheck={false}
                        placeholder={"0".repeat(codeLength)}
                        required
                        aria-describedby="outcome"
                        value={code}
                        onInput={(event) => {
                            const digits = digitsIn(event.currentTarget.value);
                            event.currentTarget.value = digits;
                            setCode(digits);
                        }}
                    />
                </label>
                <label>
                    {t("Name of this device")}
                    <input
                        type="text"
                        name="name"
                        autocomplete="off"
                        maxLength={maxName}
                        required
                        dir="auto"
                        value={name}
                        onInput={(event) => setName(event.currentTarget.value)}
                    />
                </label>
                <p id="outcome" class="bad" role="alert">{outcome && failureText(outcome)}</p>
                <p class="buttons">
                    <button type="submit" class="filled" aria-disabled={!isReady}>{t("Pair")}</button>
                </p>
            </form>
        </main>
    );
}
