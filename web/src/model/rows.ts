// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { isRecord } from "../rpc/Connection";
import type { Path } from "./path";

export const RowType = {
    text: 0,
    container: 1,
    header: 2,
    audio: 3,
    value: 4,
    query: 5,
    activate: 6,
} as const;

/** What a row's value is: a code of the SDK's and the value under the type's name. */
export type Value =
    | { type: "bool"; value: boolean }
    | { type: "number"; value: number }
    | { type: "string"; value: string }
    | { type: "other" };

/** A row as a service answered it. Every text in here comes from outside. */
export interface Row {
    readonly title: string;
    readonly description: string;
    readonly icon: string;
    readonly type: number;
    readonly path: Path;
    readonly contextPath: Path;
    readonly value: Value | null;
    readonly query: string;
    readonly queryPath: Path;
    readonly searchPath: Path;
    readonly disabled: boolean;
    readonly preferred: boolean;
    /** The host keeps the value as it is. */
    readonly pinned: boolean;
    /** The service answered no role that could be shown. */
    readonly isEmpty: boolean;
}

/** The roles that a list's rows are asked for. */
export const rowRoles = [
    "title",
    "description",
    "icon",
    "type",
    "path",
    "context",
    "value",
    "query",
    "queryPath",
    "disabled",
    "preferred",
    "pinned",
] as const;

export type Roles = Readonly<Record<string, unknown>>;

function text(value: unknown): string {
    return typeof value === "string" ? value : "";
}

export function readValue(value: unknown): Value | null {
    if (!isRecord(value))
        return null;
    if (typeof value.bool_ === "boolean")
        return { type: "bool", value: value.bool_ };
    if (typeof value.string_ === "string")
        return { type: "string", value: value.string_ };
    const number = value.int_ ?? value.double_;
    return typeof number === "number" ? { type: "number", value: number } : { type: "other" };
}

function pathIn(roles: unknown): Path {
    return isRecord(roles) ? text(roles.path) : "";
}

export function readRow(roles: Roles): Row {
    const row = {
        title: text(roles.title),
        description: text(roles.description),
        icon: text(roles.icon),
        type: typeof roles.type === "number" ? roles.type : RowType.text,
        path: text(roles.path),
        contextPath: pathIn(roles.context),
        value: readValue(roles.value),
        query: text(roles.query),
        queryPath: text(roles.queryPath),
        searchPath: pathIn(roles.search),
        disabled: roles.disabled === true,
        preferred: roles.preferred === true,
        pinned: roles.pinned === true || (isRecord(roles.value) && roles.value.pinned === true),
    };
    const isEmpty = row.type === RowType.text && row.value === null
        && row.title + row.description + row.icon + row.path + row.contextPath + row.query === "";
    return { ...row, isEmpty };
}

/** An answer to getRows. */
export interface RowsAnswer {
    readonly count: number;
    readonly rows: readonly Row[];
    readonly roles: Roles;
    /** Why the service could not be asked for rows; empty when it answered. */
    readonly problem: string;
}

export function readRows(result: unknown, names: readonly string[]): RowsAnswer {
    const answer = isRecord(result) ? result : {};
    const lists = Array.isArray(answer.rows) ? answer.rows : [];
    const rows = lists.map((list: unknown) => {
        const values: unknown[] = Array.isArray(list) ? list : [];
        return readRow(Object.fromEntries(names.map((name, i) => [name, values[i]])));
    });
    const count = typeof answer.rowsCount === "number" ? answer.rowsCount : rows.length;
    return {
        count: Math.max(0, count), rows, roles: isRecord(answer.roles) ? answer.roles : {}, problem: text(answer.problem),
    };
}
