// The texts for outcomes (outcomes.js).

import { text } from './ui.js';

const states = {
    application: 'outcomeHandedOver',
    browser: 'outcomeKept',
    both: 'outcomeTwice',
    unclear: 'outcomeUnclearShort',
    nowhere: 'outcomeDeclined',
    lost: 'outcomeLostShort',
};
const ownWords = new Set(['both', 'unclear', 'lost']);

/** @param {import('./outcomes.js').Outcome} outcome */
export function outcomeInWords({ state, reason, detail }) {
    if (!reason || ownWords.has(state))
        return { words: text(states[state]), isProblem: reason !== '' };
    return { words: text('outcomeFailed', text(reason, detail) || reason), isProblem: true };
}
