import { t } from "../i18n/i18n";
import { host } from "../model/host";
import { openMenu } from "../model/menu";
import {
    canRepeat, failure, isShown, pause, player, PlayState, repeat, resume, stop, type Player,
} from "../model/player";
import { Artwork } from "./Artwork";
import { Icon } from "./icons";

export function stateText(now: Player): string {
    if (!host.isOpen.value)
        return t("Not connected");
    if (now.error !== "")
        return now.error;
    switch (now.state) {
        case PlayState.transitioning:
            return now.isReconnecting ? t("Reconnecting …") : t("Connecting …");
        case PlayState.playing:
            return t("Playing");
        case PlayState.paused:
            return t("Paused");
        default:
            return t("Stopped");
    }
}

function MainButton({ now }: { now: Player }) {
    if (now.state === PlayState.stopped) {
        return canRepeat() ? (
            <button type="button" class="main" onClick={repeat} aria-label={t("Try again")}>
                <Icon shape="play" />
            </button>
        ) : null;
    }
    if (now.state === PlayState.paused) {
        return (
            <button type="button" class="main" onClick={resume} aria-label={t("Play")}>
                <Icon shape="play" />
            </button>
        );
    }
    const isWaiting = now.state === PlayState.transitioning && !now.isReconnecting;
    return (
        <button
            type="button"
            class={now.state === PlayState.transitioning ? "main waiting" : "main"}
            onClick={pause}
            aria-disabled={isWaiting}
            aria-label={t("Pause")}
        >
            <Icon shape="pause" />
        </button>
    );
}

export function PlayerBar() {
    const now = player.value;
    const failed = failure.value;
    if (!isShown.value && !failed)
        return null;
    const onAir = now.streamTitle || now.description;
    const rate = now.bitRate > 0 ? t("%1 kbit/s", Math.round(now.bitRate / 1000)) : "";
    return (
        <section class={host.isOpen.value ? "player" : "player stale"} aria-label={t("Player")}>
            <Artwork icon={now.icon} fallback="radio" />
            <div class="what">
                <p class="title" title={now.title}>{now.title || t("Player")}</p>
                {onAir && <p class="on-air" title={onAir}>{onAir}</p>}
                <p class={now.error || failed ? "state bad" : "state"}>
                    {failed ? failed.message : stateText(now)}
                    {rate && now.state === PlayState.playing && host.isOpen.value && <span class="rate"> · {rate}</span>}
                </p>
            </div>
            <div class="controls">
                <MainButton now={now} />
                <button
                    type="button"
                    class="round stop"
                    aria-label={now.state === PlayState.stopped ? t("Close") : t("Stop")}
                    onClick={stop}
                >
                    <Icon shape={now.state === PlayState.stopped ? "close" : "stop"} />
                </button>
                {now.contextPath && (
                    <button
                        type="button"
                        class="round"
                        aria-haspopup="dialog"
                        aria-label={t("More for %1", now.title)}
                        onClick={() => openMenu(now.contextPath, now.title)}
                    >
                        <Icon shape="more" />
                    </button>
                )}
            </div>
        </section>
    );
}
