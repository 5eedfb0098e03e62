// How the extension's pages ask its background script.

/** Resolves with the value asked for; rejects with the problem in words. */
export async function ask(request, members = {}) {
    const answer = await chrome.runtime.sendMessage({ request, ...members });
    if (answer?.problem)
        throw new Error(answer.problem);
    return answer?.value;
}

/** Calls back with what the background script tells by itself, by the name of the message's member. */
export function follow(member, callback) {
    chrome.runtime.onMessage.addListener(message => {
        if (message[member] !== undefined)
            callback(message[member]);
    });
}
