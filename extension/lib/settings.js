// The options that the application keeps for the extension: asked for once, followed from then on,
// and posted back when the user changes them.

export class Settings {
    /** The record as the host gave it last, null before. */
    current = null;
    onChanged = _settings => {};

    #host;

    constructor(host) { this.#host = host; }

    /** Resolves once the application has answered, which may take as long as it takes to start. */
    async query() { this.accept(await this.#host.ask('query_settings')); }

    /** Takes the record of an answer, or of a message that the host sent by itself. */
    accept(message) {
        this.current = message.settings;
        this.onChanged(this.current);
    }

    /** Stores a changed record. The host does not echo what it is told. */
    async post(settings) {
        await this.#host.ask('post_settings', { post_settings: settings });
        this.current = settings;
        this.onChanged(this.current);
    }

    forget() { this.current = null; }
}
