// Faulty tasks: valid ones with random mutations. Malformed texts are left to the fuzz targets.

import { readFileSync } from 'node:fs';

const corpus = new URL('../../../fuzz/corpus/fuzz_task_reader/', import.meta.url);

/**
 * Without "shutdown", which ends the host; without tasks that are answered only when the application
 * answers; and without options in the handshake, which would change the frames that follow.
 */
const tasks = [
    { id: '1', type: 'handshake', handshake: { api_version: '3', browser: 'test' } },
    { id: '2', type: 'ui_strings' },
    { id: '3', type: 'key_state' },
    ...['browser_proxy', 'create_downloads', 'kov_json_task', 'post_settings', 'window']
        .map(name => JSON.parse(readFileSync(new URL(`${name}.json`, corpus)))),
];

const values = [
    null, true, false, 0, -1, 1e308, 0.1, 4294967296, '', '0', '1', '-1', 'x', ' 1', '18446744073709551616',
    '\u0000', '\ud800', 'é'.repeat(50), 'handshake', 'kov_json_task x', [], {}, [[]], [{}], { item: [] }, { item: {} },
];

/** A small seeded random generator (mulberry32): the same numbers on every machine. */
export function numbers(seed) {
    let state = seed >>> 0;
    const next = () => {
        state = (state + 0x6d2b79f5) >>> 0;
        let mixed = Math.imul(state ^ (state >>> 15), state | 1);
        mixed ^= mixed + Math.imul(mixed ^ (mixed >>> 7), mixed | 61);
        return (mixed ^ (mixed >>> 14)) >>> 0;
    };
    const below = limit => next() % limit;
    return { below, pick: list => list[below(list.length)] };
}

function mutateRecord(task, random) {
    const places = [];
    const visit = node => {
        for (const key of Object.keys(node)) {
            places.push([node, key]);
            if (node[key] !== null && typeof node[key] === 'object')
                visit(node[key]);
        }
    };
    visit(task);
    if (places.length === 0)
        return;
    const [node, key] = random.pick(places);
    const other = random.pick(places);
    const changes = [
        () => { node[key] = structuredClone(random.pick(values)); },
        () => { delete node[key]; },
        () => { node[random.pick(['id', 'type', 'item', 'url', '', 'x'])] = structuredClone(node[key]); },
        () => { node[key] = structuredClone(other[0][other[1]]); },
        () => { node[key] = [node[key], structuredClone(node[key])]; },
    ];
    random.pick(changes)();
}

/** Endless; the same for the same seed. */
export function* mutatedTasks(seed) {
    const random = numbers(seed);
    for (;;) {
        const task = structuredClone(random.pick(tasks));
        const changes = random.below(4);
        for (let i = 0; i < changes; ++i)
            mutateRecord(task, random);
        yield task;
    }
}

const isRecord = value => value !== null && typeof value === 'object' && !Array.isArray(value);

/**
 * Whether a task is, or may be, one for which the host is documented to end abnormally: a
 * "create_downloads" or "post_settings" whose record is not an object, or a "kov_json_task" whose id
 * is not a number.
 */
export function endsAbnormally(task) {
    if (typeof task.id !== 'string' || typeof task.type !== 'string')
        return false;
    const [type] = task.type.trimStart().split(/[ \t\n\v\f\r]/);
    if (type === 'kov_json_task') {
        const number = task.id.match(/^[ \t\n\v\f\r]*([+-]?\d+)/);
        return !number || BigInt.asIntN(64, BigInt(number[1])) !== BigInt(number[1]);
    }
    if (type === 'create_downloads')
        return type in task && !isRecord(task.create_downloads);
    if (type === 'post_settings' && type in task) {
        const settings = task.post_settings;
        return !isRecord(settings) || ('browser' in settings && !(isRecord(settings.browser)
            && [settings.browser.menu, settings.browser.monitor]
                .every(record => record === undefined || isRecord(record))));
    }
    return false;
}
