// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useState } from "preact/hooks";

import { language, t, tn } from "../i18n/i18n";
import { access, isOwner } from "../model/access";
import {
    changeDevice, devices, devicesError, pairing, revokeDevice, startPairing, stopPairing, watchDevices,
    type Device, type OpenPairing, type Role,
} from "../model/devices";
import { asRpcError } from "../model/menu";
import { maxName } from "../pair/pairing";
import { Icon } from "./icons";
import { OwnScreen } from "./OwnScreen";
import { QrCode } from "./QrCode";
import { errorText } from "./words";

const roleText = (role: Role) => (role === "owner" ? t("Owner") : t("Listener"));

function RoleChoice({ role, choose }: { role: Role; choose(role: Role): void }) {
    return (
        <label>
            {t("What it may do")}
            <select value={role} onChange={(event) => choose(event.currentTarget.value as Role)}>
                <option value="listener">{t("Listen and change favorites")}</option>
                <option value="owner">{t("Everything, settings and devices too")}</option>
            </select>
        </label>
    );
}

/** Whole seconds until a time, counted down. */
function useCountdown(until: number): number {
    const left = () => Math.max(0, Math.ceil((until - Date.now()) / 1000));
    const [seconds, setSeconds] = useState(left);
    useEffect(() => {
        setSeconds(left());
        const timer = setInterval(() => setSeconds(left()), 250);
        return () => clearInterval(timer);
    }, [until]);
    return seconds;
}

/** The code of an open pairing, and all that a new device needs. */
function ShownCode({ open }: { open: OpenPairing }) {
    const seconds = useCountdown(open.until);
    const [url] = open.urls;
    return (
        <div class="claim">
            <div class="words">
                {open.code === "" ? (
                    <p>{t("A pairing that was started elsewhere is under way. Its code is shown there.")}</p>
                ) : (
                    <>
                        <p>{open.role === "owner"
                            ? t("Enter this code on the new device. It may then do everything.")
                            : t("Enter this code on the new device. It may then listen.")}</p>
                        <p class="code">
                            <span class="unseen">{t("Code: %1", [...open.code].join(" "))}</span>
                            <span aria-hidden="true">{open.code}</span>
                        </p>
                    </>
                )}
                {open.urls.length > 0 && (
                    <div>
                        <p>{t("Address for the new device:")}</p>
                        <ul class="addresses">{open.urls.map((each) => <li key={each} dir="ltr">{each}</li>)}</ul>
                    </div>
                )}
                {open.fingerprint !== "" && (
                    <div>
                        <p>{t("If its browser warns, the certificate must have this SHA-256 fingerprint:")}</p>
                        <p class="fingerprint" dir="ltr">{open.fingerprint.split(":").map((byte, index) => <>{index > 0 && <>:<wbr /></>}{byte}</>)}</p>
                    </div>
                )}
                <p class="quiet-text" role="timer" aria-live="off">{tn("%n second left", "%n seconds left", seconds)}</p>
            </div>
            {url !== undefined && open.code !== "" && (
                <QrCode text={`${url}pair#${open.code}`} label={t("QR code that opens the pairing page on the new device")} />
            )}
        </div>
    );
}

function outcomeText(): string {
    const now = pairing.value;
    switch (now.is) {
        case "paired":
            return now.name === "" ? t("The device is paired.") : t("%1 is paired.", now.name);
        case "failed":
            return t("The code was entered wrongly too often, so the pairing has ended.");
        case "expired":
            return t("The two minutes are over, and no device was paired.");
        default:
            return "";
    }
}

function PairingCard() {
    const [role, setRole] = useState<Role>("listener");
    const now = pairing.value;
    const isGood = now.is === "paired";
    const outcome = outcomeText();
    return (
        <section class="card account pairing" aria-labelledby="pairing">
            <h2 id="pairing">{t("Pair a device")}</h2>
            <div aria-live="polite">
                {outcome !== "" && (
                    <p class={isGood ? "good" : "bad"} dir="auto">{isGood && <Icon shape="check" />}{outcome}</p>
                )}
                {now.is === "open" && <ShownCode open={now} />}
            </div>
            {now.is === "open" && now.code !== "" ? (
                <p class="buttons">
                    <button type="button" onClick={() => void stopPairing()}>{t("Cancel")}</button>
                </p>
            ) : (
                <form
                    class="fields"
                    onSubmit={(event) => {
                        event.preventDefault();
                        void startPairing(role);
                    }}
                >
                    <RoleChoice role={role} choose={setRole} />
                    <p class="buttons">
                        <button type="submit" class="filled">{t("Show a code")}</button>
                        {now.is === "open" && (
                            <button type="button" onClick={() => void stopPairing()}>{t("Stop the pairing")}</button>
                        )}
                    </p>
                </form>
            )}
        </section>
    );
}

function deviceText(device: Device): string {
    const seen = device.seen === null
        ? ""
        : t("last here %1", new Intl.DateTimeFormat(language(), { dateStyle: "medium", timeStyle: "short" }).format(device.seen));
    const parts = [roleText(device.role), device.isConnected ? t("connected") : seen, device.address];
    return parts.filter((part) => part !== "").join(" · ");
}

function DeviceForm({ device, close }: { device: Device; close(): void }) {
    const [name, setName] = useState(device.name);
    const [role, setRole] = useState<Role>(device.role);
    const [isAsking, setAsking] = useState(false);
    const [problem, setProblem] = useState("");
    const run = async (change: () => Promise<void>) => {
        try {
            await change();
            close();
        } catch (error) {
            setProblem(errorText(asRpcError(error)));
        }
    };
    if (isAsking) {
        return (
            <div class="fields" role="group" aria-labelledby={`ask-${device.id}`}>
                <p id={`ask-${device.id}`} dir="auto">
                    {device.isCurrent
                        ? t("Remove this device? It is out at once, and this page with it.")
                        : t("Remove %1? It is out at once, and has to be paired anew to come back.", device.name)}
                </p>
                {problem !== "" && <p class="bad" role="alert" dir="auto">{problem}</p>}
                <p class="buttons">
                    <button type="button" class="filled danger" onClick={() => void run(() => revokeDevice(device))}>{t("Remove")}</button>
                    <button type="button" onClick={() => setAsking(false)}>{t("Keep it")}</button>
                </p>
            </div>
        );
    }
    return (
        <form
            class="fields"
            onSubmit={(event) => {
                event.preventDefault();
                if (name.trim() !== "")
                    void run(() => changeDevice(device, name.trim(), role));
            }}
        >
            <label>
                {t("Name")}
                <input type="text" required maxLength={maxName} autocomplete="off" dir="auto" value={name} onInput={(event) => setName(event.currentTarget.value)} />
            </label>
            <RoleChoice role={role} choose={setRole} />
            {problem !== "" && <p class="bad" role="alert" dir="auto">{problem}</p>}
            <p class="buttons">
                <button type="submit" class="filled">{t("Save")}</button>
                <button type="button" onClick={close}>{t("Cancel")}</button>
                <button type="button" onClick={() => setAsking(true)}>{t("Remove …")}</button>
            </p>
        </form>
    );
}

function DeviceCard({ device }: { device: Device }) {
    const [isOpen, setOpen] = useState(false);
    const name = device.name || t("Untitled");
    return (
        <li class="card device">
            <div class="device-head">
                <div class="texts">
                    <h3 dir="auto">{name}{device.isCurrent && <span class="badge">{t("This device")}</span>}</h3>
                    <p class="quiet-text" dir="auto">{deviceText(device)}</p>
                </div>
                <button
                    type="button"
                    class="plain-button"
                    aria-label={t("Change %1", name)}
                    aria-expanded={isOpen}
                    onClick={() => setOpen(!isOpen)}
                >
                    {t("Change")}
                </button>
            </div>
            {isOpen && <DeviceForm key={`${device.name} ${device.role}`} device={device} close={() => setOpen(false)} />}
        </li>
    );
}

function Known() {
    useEffect(watchDevices, []);
    const all = devices.value;
    const error = devicesError.value;
    return (
        <>
            {error && <p class="bad problem-line" role="alert" dir="auto">{errorText(error)}</p>}
            <PairingCard />
            {all && all.length === 0 && <p class="quiet-text">{t("No device is paired yet.")}</p>}
            {all && all.length > 0 && (
                <section aria-labelledby="paired">
                    <h2 class="group" id="paired">{t("Paired devices")}</h2>
                    <ul role="list">{all.map((device) => <DeviceCard key={device.id} device={device} />)}</ul>
                </section>
            )}
        </>
    );
}

/** The paired devices: who may come in, and as what. For owners. */
export function DevicesView() {
    return (
        <OwnScreen title={t("Devices")}>
            {isOwner.value ? <Known /> : access.value && <p>{t("Only an owner of this host may do that.")}</p>}
        </OwnScreen>
    );
}
