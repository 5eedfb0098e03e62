// Access to Firefox's own window through the automation connection.

/** Runs a function in Firefox's own window, with chrome privileges. */
export async function inFirefoxItself({ connection }, fn, argument = '') {
    const { result: { contexts } } = await connection.send('browsingContext.getTree', { 'moz:scope': 'chrome' });
    const { context } = contexts.find(each => each.url === 'chrome://browser/content/browser.xhtml');
    const { result } = await connection.send('script.callFunction', {
        target: { context },
        functionDeclaration: String(fn),
        arguments: [{ type: 'string', value: argument }],
        awaitPromise: true,
    });
    if (result.type !== 'success')
        throw new Error(result.exceptionDetails.text);
    return result.result.value;
}
