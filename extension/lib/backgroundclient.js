// Requests from the extension's pages to its background script.

/** Resolves with the answer; rejects with an error message for the user. */
export async function ask(request, members = {}) {
    const answer = await chrome.runtime.sendMessage({ request, ...members });
    if (answer?.problem)
        throw new Error(answer.problem);
    return answer?.value;
}

/** Calls back for each notification of the background script that has this member. */
export function follow(member, callback) {
    chrome.runtime.onMessage.addListener(message => {
        if (message[member] !== undefined)
            callback(message[member]);
    });
}
