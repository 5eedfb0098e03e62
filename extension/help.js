// What the extension does, and whether everything that a download needs is in place: opened when the
// extension is installed, and from every text on a problem.

import { ask, follow } from './lib/background.js';
import { check, isWorking } from './lib/diagnosis.js';
import { element, localize, make, text } from './lib/ui.js';

const isFirefox = Boolean(chrome.runtime.getBrowserInfo);
const siteAccess = { origins: chrome.runtime.getManifest().host_permissions };

localize(text('helpTitle'));
element('pin').textContent = text(isFirefox ? 'helpPinFirefox' : 'helpPinChromium');

function browserName() {
    const [name] = /(Firefox|Edg|OPR|Vivaldi|Chrome|Chromium)\/[\d.]+/.exec(navigator.userAgent) ?? [''];
    return name.replace('/', ' ');
}

/** A command to be run in a terminal, with a button that copies it. */
function command(line) {
    const button = make('button', { textContent: text('copy'), onclick: async () => {
        await navigator.clipboard.writeText(line);
        button.textContent = text('copied');
    } });
    return make('div.command', {}, make('code', { textContent: line }), button);
}

/** What the user can do about a step, as elements. */
const cures = {
    command: ({ line }) => command(line),
    grant: () => make('button', {
        textContent: text('grantAccess'),
        onclick: async () => {
            await chrome.permissions.request(siteAccess);
            await run();
        },
    }),
};

const marks = { ok: '✓', broken: '✗', unknown: '…' };

function showSteps(steps) {
    element('steps').replaceChildren(...steps.map(({ name, state, words, cure }) => make(`li.${state}`, { 'data-step': name },
        make('span.mark', { role: 'img', ariaLabel: text(`mark_${state}`), textContent: marks[state] }),
        make('div.grow', {},
            make('strong', { textContent: text(`step_${name}`) }), make('br'),
            make('span', { textContent: words }),
            cure ? cures[cure.kind](cure) : null))));
    const broken = steps.find(({ state }) => state === 'broken');
    element('verdict').textContent = broken ? text('verdictBroken', text(`step_${broken.name}`))
        : text(isWorking(steps) ? 'verdictWorks' : 'verdictTest');
}

async function run(request = 'check') {
    element('again').disabled = element('test').disabled = true;
    try {
        showSteps(check({ ...await ask(request), browser: browserName() }, await chrome.permissions.contains(siteAccess)));
    } finally {
        element('again').disabled = element('test').disabled = false;
    }
}

function showKeeping({ shortcut, modifier }) {
    element('keep').textContent = [
        text('helpKeep'),
        modifier && text('keepByKey', text(`key_${modifier}`)),
        shortcut && text('keepByShortcut', shortcut),
    ].filter(Boolean).join(' ');
}

element('doctor').append(command('kovalo-host doctor'));
element('again').addEventListener('click', () => run('checkAgain'));
element('test').addEventListener('click', () => run('testDownload'));
follow('status', () => run());
follow('keeping', showKeeping);
showKeeping(await ask('keeping'));
await run();
