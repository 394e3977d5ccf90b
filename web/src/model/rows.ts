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

/** A row's value: the SDK's code for its type, and the value under the type's name. */
export type Value =
    | { type: "bool"; value: boolean }
    | { type: "number"; value: number }
    | { type: "string"; value: string }
    | { type: "other" };

/** A row of a service's response. All texts come from outside. */
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
    /** The value is read-only. */
    readonly pinned: boolean;
    /** The row has no role that can be shown. */
    readonly isEmpty: boolean;
}

/** The roles requested for rows of a list. */
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

export function text(value: unknown): string {
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

export function pathIn(roles: unknown): Path {
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

/** A response to getRows. */
export interface RowsAnswer {
    readonly count: number;
    readonly rows: readonly Row[];
    readonly roles: Roles;
    /** Why the rows could not be read; empty if they could. */
    readonly problem: string;
}

/** The roles of each row of a result of getRows, by their names. */
export function rolesIn(result: unknown, names: readonly string[]): Roles[] {
    const lists = isRecord(result) && Array.isArray(result.rows) ? result.rows : [];
    return lists.map((list: unknown) => {
        const values: unknown[] = Array.isArray(list) ? list : [];
        return Object.fromEntries(names.map((name, i) => [name, values[i]]));
    });
}

export function readRows(result: unknown, names: readonly string[]): RowsAnswer {
    const answer = isRecord(result) ? result : {};
    const rows = rolesIn(result, names).map(readRow);
    const count = typeof answer.rowsCount === "number" ? answer.rowsCount : rows.length;
    return {
        count: Math.max(0, count), rows, roles: isRecord(answer.roles) ? answer.roles : {}, problem: text(answer.problem),
    };
}
