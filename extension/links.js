// The page for choosing among a page's links. No request is made before the user chooses.

import { ask } from './lib/backgroundclient.js';
import { LinkKinds, nameOf, seemsToAct } from './lib/links.js';
import { element, localize, make, numberInWords, text } from './lib/ui.js';

localize(text('linksTitle'));
const key = location.hash.slice(1);
const kinds = new LinkKinds(await (await fetch('lib/filetypes.json')).json());
const list = await ask('links', { key });
const { links = [], documentUrl = '', title = '' } = list ?? {};

const rows = links.map((link, index) => {
    const kind = kinds.of(link);
    const name = nameOf(link);
    const { host } = new URL(link.url);
    const box = make('input', { type: 'checkbox', id: `link-${index}`, checked: !seemsToAct(link) });
    const label = make('label', { htmlFor: box.id, title: link.url }, make('span.clamped', { textContent: name }));
    if (link.text && link.text !== name)
        label.append(make('small.clamped', { textContent: link.text }));
    const line = make('tr', {},
        make('td.check', {}, box), make('td', {}, label),
        make('td.kind', { textContent: text(`kind_${kind}`) }),
        make('td.host', { textContent: host }));
    return { index, kind, box, line, searched: `${name}\n${link.text}\n${link.url}`.toLowerCase() };
});

/** In the list of kinds: all but pages. */
const everyFile = 'files';

const isShown = row => !row.line.hidden;
const chosen = () => rows.filter(row => isShown(row) && row.box.checked);

function showCount() {
    const count = chosen().length;
    element('download').textContent = text('linksDownload', numberInWords(count));
    element('download').disabled = count === 0;
}

function applyFilter() {
    const words = element('filter').value.toLowerCase().split(/\s+/).filter(Boolean);
    const kind = element('kind').value;
    const isOfKind = row => kind === '' || (kind === everyFile ? row.kind !== 'page' : row.kind === kind);
    for (const row of rows)
        row.line.hidden = !isOfKind(row) || !words.every(word => row.searched.includes(word));
    element('noMatch').hidden = rows.some(isShown);
    showCount();
}

function choose(isChosen) {
    for (const row of rows.filter(isShown))
        row.box.checked = isChosen;
    showCount();
}

element('from').textContent = element('from').title = title || documentUrl;
element('list').hidden = rows.length === 0;
element('empty').hidden = rows.length > 0;
element('empty').textContent = text(list ? 'linksEmpty' : 'linksGone');
element('links').replaceChildren(...rows.map(row => row.line));
element('kind').append(
    make('option', { value: '', textContent: text('linksEveryKind') }),
    make('option', { value: everyFile, textContent: text('linksEveryFile') }),
    ...kinds.all.filter(kind => rows.some(row => row.kind === kind))
        .map(kind => make('option', { value: kind, textContent: text(`kind_${kind}`) })));
element('filter').addEventListener('input', applyFilter);
element('kind').addEventListener('change', applyFilter);
element('all').addEventListener('click', () => choose(true));
element('none').addEventListener('click', () => choose(false));
element('links').addEventListener('change', showCount);
element('download').addEventListener('click', async () => {
    const picked = chosen();
    element('download').disabled = true;
    element('said').textContent = text('handingOver');
    try {
        const { problem, isDeclined } = await ask('downloadLinks', { key, indexes: picked.map(row => row.index) });
        element('said').textContent = problem
            ?? (isDeclined ? text('outcomeDeclined') : text('linksHandedOver', numberInWords(picked.length)));
        element('said').classList.toggle('bad', problem !== null);
        if (!problem && !isDeclined)
            picked.forEach(row => { row.box.checked = false; });
    } catch (error) {
        element('said').textContent = error.message;
        element('said').classList.add('bad');
    }
    showCount();
});
showCount();
