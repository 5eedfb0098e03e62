/** Runs asynchronous work one piece at a time, in the order of the calls. */
export class SerialQueue {
    #last = Promise.resolve();

    /** Resolves or rejects as the work does. After a failure, the queue goes on with the next piece. */
    run(work) {
        const mine = this.#last.then(work);
        this.#last = mine.catch(() => {});
        return mine;
    }
}
