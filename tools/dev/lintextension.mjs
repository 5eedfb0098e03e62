// Checks the built extension: node lintextension.mjs FOLDER.
//
// Reports the findings of Mozilla's linter, unused and missing texts, and (as a warning only) texts without
// a translation.

import { spawnSync } from 'node:child_process';
import { readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const linter = fileURLToPath(new URL('../../node_modules/.bin/addons-linter', import.meta.url));
const folder = process.argv[2];
const english = join(folder, '_locales/en/messages.json');

/** Accepted findings: their subject, and the reason. */
const explained = {
    '/background/service_worker': 'Chromium knows no other background; Firefox takes the scripts beside it',
    'downloads.onDeterminingFilename': 'Chromium only, and used only where it exists',
};

function lint() {
    // The linter exits with 1 after errors.
    const { stdout, stderr } = spawnSync(linter, ['--output', 'json', folder], { encoding: 'utf8' });
    if (!stdout)
        return [`addons-linter: ${stderr}`];
    const { errors, warnings, notices } = JSON.parse(stdout);
    return [...errors, ...warnings, ...notices]
        .filter(({ message }) => !Object.keys(explained).some(name => message.includes(name)))
        .map(({ code, message, file, line }) => `${file ?? folder}${line ? `:${line}` : ''}: ${message} [${code}]`);
}

/** Words in the sources that may be keys of texts, and the prefixes of composed keys. */
function literals() {
    const files = readdirSync(folder, { recursive: true }).filter(file => /\.(js|html)$|^manifest\.json$/.test(file));
    const source = files.map(file => readFileSync(join(folder, file), 'utf8')).join('\n');
    const found = pattern => new Set([...source.matchAll(pattern)].map(match => match[1]));
    return {
        whole: found(/(?:['"]|__MSG_)([A-Za-z]\w*?)(?:['"]|__)/g),
        starts: found(/['"`]([a-z][A-Za-z]*_)(?:['"]|\$\{)/g),
        asked: found(/(?:\b(?:text|getMessage|HostError)\(|data-(?:text|label|hint)=|\b(?:text|hint|title|reason): |__MSG_)['"]?([a-z]\w*?)(?:['"]|__)/g),
    };
}

function checkKeys() {
    const setByBuild = ['language', 'direction'];
    const { whole, starts, asked } = literals();
    const isUsed = key => whole.has(key) || [...starts].some(start => key.startsWith(start));
    return [
        ...keys.filter(key => !isUsed(key) && !setByBuild.includes(key)).map(key => `${english}: no page uses "${key}"`),
        ...[...asked].filter(key => !keys.includes(key)).map(key => `${english}: there is no "${key}"`),
    ];
}

/** Translations keep the placeholders of the text. Browsers show the English text for a missing one. */
function checkTranslations() {
    const placeholders = ({ message }) => (message.match(/\$\w+\$/g) ?? []).sort().join();
    return readdirSync(join(folder, '_locales')).flatMap(locale => {
        const translated = JSON.parse(readFileSync(join(folder, '_locales', locale, 'messages.json')));
        const missing = keys.filter(key => !Object.hasOwn(translated, key));
        if (missing.length > 0)
            console.log(`warning: no translation in kov_${locale}.ts: ${missing.join(', ')}`);
        return Object.keys(translated).filter(key => placeholders(translated[key]) !== placeholders(messages[key]))
            .map(key => `kov_${locale}.ts: "${key}" has other placeholders than in English`);
    });
}

const messages = JSON.parse(readFileSync(english));
const keys = Object.keys(messages);
const faults = [...checkTranslations(), ...lint(), ...checkKeys()];
faults.forEach(each => console.log(each));
process.exitCode = faults.length > 0 ? 1 : 0;
