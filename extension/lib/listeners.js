// Listeners that are there together, and only while somebody needs what they tell.

export class Listeners {
    #all;
    #areOn = false;

    /** @param {Array[]} all each as [event, listener, ...filters] */
    constructor(all) { this.#all = all; }

    get areOn() { return this.#areOn; }

    /** Adds or removes them. Returns whether that was a change. */
    set(on) {
        if (on === this.#areOn)
            return false;
        this.#areOn = on;
        for (const [event, listener, ...filters] of this.#all) {
            if (on)
                event.addListener(listener, ...filters);
            else
                event.removeListener(listener);
        }
        return true;
    }
}
