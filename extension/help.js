// The help page: what the extension does, and a diagnosis. Opened after the installation, and from every
// error message.

import { ask, follow } from './lib/backgroundclient.js';
import { check, isWorking } from './lib/diagnosis.js';
import { requestSiteAccess } from './lib/siteaccess.js';
import { element, localize, make, text } from './lib/ui.js';

const isFirefox = Boolean(chrome.runtime.getBrowserInfo);

localize(text('helpTitle'));
element('pin').textContent = text(isFirefox ? 'helpPinFirefox' : 'helpPinChromium');
element(isFirefox ? 'pinMark' : 'wheelMark').remove();

/** How to pin the button, while it is not pinned. */
async function showPinning() { element('pinning').hidden = (await chrome.action.getUserSettings?.())?.isOnToolbar === true; }
addEventListener('focus', showPinning);
showPinning();

function browserName() {
    // Other Chromium-based browsers are also named Chrome there.
    const brands = navigator.userAgentData?.brands.filter(({ brand }) => !/not.*brand/i.test(brand)) ?? [];
    const own = brands.find(({ brand }) => brand !== 'Chromium') ?? brands[0];
    const [name] = /Firefox\/[\d.]+/.exec(navigator.userAgent) ?? [''];
    return own ? `${own.brand} ${own.version}` : name.replace('/', ' ');
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
    command: ({ line, hint }) => [command(line), hint ? make('small', { textContent: hint }) : null],
    grant: () => [make('button', { textContent: text('grantAccess'), onclick: requestSiteAccess })],
    options: () => [make('button', {
        textContent: text('openOptions'),
        onclick: () => chrome.runtime.openOptionsPage(),
    })],
};

const marks = { ok: '✓', broken: '✗', unknown: '…' };

function showSteps(steps) {
    element('steps').replaceChildren(...steps.map(({ name, state, words, cure }) => make(`li.${state}`, { 'data-step': name },
        make('span.mark', { role: 'img', ariaLabel: text(`mark_${state}`), textContent: marks[state] }),
        make('div.grow', {},
            make('strong', { textContent: text(`step_${name}`) }), make('br'),
            make('span', { textContent: words }),
            ...cure ? cures[cure.kind](cure) : []))));
    const broken = steps.find(({ state }) => state === 'broken');
    element('verdict').textContent = broken ? text('verdictBroken', text(`step_${broken.name}`))
        : text(isWorking(steps) ? 'verdictWorks' : 'verdictTest');
}

/** The result of the last test download, until something else is requested. */
let tested;
let isBusy = false;

async function run(request) {
    const facts = await ask(request);
    tested = request === 'check' ? tested : facts.test;
    showSteps(check({ ...facts, test: tested, browser: browserName() }));
}

/** The same for a click; may take until the timeout of the host or the application. */
async function runSlowly(request, words) {
    const focused = document.activeElement; // would be lost with a disabled button
    isBusy = element('again').disabled = element('test').disabled = true;
    element('verdict').textContent = words;
    try {
        await run(request);
    } finally {
        isBusy = element('again').disabled = element('test').disabled = false;
        focused?.focus();
    }
}

/** Called after changes from elsewhere. */
function onChanged() {
    if (!isBusy)
        run('check');
}

function showKeeping({ shortcut, modifier }) {
    element('keep').textContent = [
        text('helpKeep'),
        modifier && text('keepByKey', text(`key_${modifier}`)),
        shortcut && text('keepByShortcut', shortcut),
    ].filter(Boolean).join(' ');
}

element('doctor').append(command('kovalo-host doctor'));
element('again').addEventListener('click', () => runSlowly('checkAgain', text('statusConnecting')));
element('test').addEventListener('click', () => runSlowly('testDownload', text('handingOver')));
follow('status', onChanged);
follow('settings', onChanged);
follow('keeping', showKeeping);
showKeeping(await ask('keeping'));
await run('check');
