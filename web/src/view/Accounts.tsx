// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useMemo, useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import { Account, type Link } from "../model/accounts";
import { pageIn } from "../model/claim";
import { host } from "../model/host";
import { services, type AccountRole, type Service } from "../model/services";
import { Icon } from "./icons";
import { QrCode } from "./QrCode";
import { errorText } from "./words";

/** The account of each service that has accounts: its state, linking and unlinking. */
export function Accounts() {
    return (
        <>
            {services.value?.map((service) => (
                service.account && <AccountPanel key={service.path} service={service} role={service.account} />
            ))}
        </>
    );
}

function AccountPanel({ service, role }: { service: Service; role: AccountRole }) {
    const account = useMemo(() => new Account(service.path, role), [service.path, role.path, role.type, role.key]);
    const isOpen = host.isOpen.value;
    useEffect(() => {
        if (isOpen)
            void account.read();
    }, [account, isOpen]);
    useEffect(() => {
        account.resume();
        return () => account.close();
    }, [account]);
    const link = account.link.value;
    if (link.is === "none" || link.is === "unknown")
        return null;
    return (
        <section class="card account" aria-label={t("%1 account", service.title)}>
            <h2>{t("%1 account", service.title)}</h2>
            <div aria-live="polite"><Status account={account} link={link} service={service.title} /></div>
            {account.error.value && <p class="bad" role="alert" dir="auto">{errorText(account.error.value)}</p>}
            <Actions account={account} link={link} />
        </section>
    );
}

function Status({ account, link, service }: { account: Account; link: Link; service: string }) {
    switch (link.is) {
        case "failed":
            return (
                <p class="bad">
                    {errorText(link.error)}{" "}
                    <button type="button" class="quiet" onClick={() => void account.read()}>{t("Try again")}</button>
                </p>
            );
        case "linked":
            return <p class="good"><Icon shape="link" /> {t("Linked to %1", link.user)}</p>;
        case "claiming":
            return <Claim account={account} message={link.message} code={link.code} />;
        default:
            return (
                <>
                    <p>{t("This device is not linked to a %1 account.", service)}</p>
                    <p class="quiet-text">
                        {t("While it is linked, the favorites are those of the account. The ones that this device has now stay with it and are back after unlinking.")}
                    </p>
                </>
            );
    }
}

/** The claim code and where to enter it, as a link and as a QR code. */
function Claim({ account, message, code }: { account: Account; message: string; code: string }) {
    const page = pageIn(message);
    const [before = "", ...after] = page ? message.split(page.text) : [message];
    return (
        <div class="claim">
            <div class="words">
                {message && (
                    <p dir="auto">
                        {before}
                        {page && <a href={page.href} target="_blank" rel="noopener noreferrer">{page.text}</a>}
                        {after.join(page?.text)}
                    </p>
                )}
                <p class="code">
                    <span class="unseen">{t("Code: %1", [...code].join(" "))}</span>
                    <span aria-hidden="true">{code}</span>
                </p>
                <p class="quiet-text">
                    {t("Waiting for the code to be entered …")}{" "}
                    <button type="button" class="quiet" onClick={() => void account.look()}>{t("Check now")}</button>
                </p>
            </div>
            {page && <QrCode text={page.href} label={t("QR code of the page where the code is entered")} />}
        </div>
    );
}

function Actions({ account, link }: { account: Account; link: Link }) {
    const [withPassword, setWithPassword] = useState(false);
    useEffect(() => setWithPassword(false), [link.is]);
    if (link.is === "claiming") {
        return (
            <p class="buttons">
                <button type="button" onClick={() => void account.cancel()}>{t("Cancel")}</button>
            </p>
        );
    }
    if (withPassword)
        return <PasswordForm account={account} link={link} leave={() => setWithPassword(false)} />;
    return (
        <p class="buttons">
            {link.is === "unlinked" && (
                <button
                    type="button"
                    class="filled"
                    aria-disabled={account.isBusy.value}
                    onClick={() => void account.claim()}
                >
                    {t("Link with a code")}
                </button>
            )}
            {link.is !== "failed" && (
                <button type="button" onClick={() => setWithPassword(true)}>
                    {link.is === "linked" ? t("Unlink …") : t("Sign in with a password …")}
                </button>
            )}
        </p>
    );
}

function PasswordForm({ account, link, leave }: { account: Account; link: Link; leave(): void }) {
    const linked = link.is === "linked" ? link.user : "";
    const [user, setUser] = useState(linked);
    const [password, setPassword] = useState("");
    return (
        <form
            class="password"
            onSubmit={(event) => {
                event.preventDefault();
                setPassword("");
                void (linked ? account.drop(user, password) : account.join(user, password));
            }}
        >
            <label>
                {t("User name")}
                <input
                    type="text"
                    autocomplete="username"
                    required
                    value={user}
                    onInput={(event) => setUser(event.currentTarget.value)}
                />
            </label>
            <label>
                {t("Password")}
                <input
                    type="password"
                    autocomplete="current-password"
                    required
                    value={password}
                    onInput={(event) => setPassword(event.currentTarget.value)}
                />
            </label>
            <p class="buttons">
                <button type="submit" class="filled" aria-disabled={account.isBusy.value}>
                    {linked ? t("Unlink") : t("Sign in")}
                </button>
                <button type="button" onClick={leave}>{t("Cancel")}</button>
            </p>
        </form>
    );
}
