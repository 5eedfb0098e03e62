// The frames of the native-messaging channel from the browser's side, in all encodings that the
// handshake's options select.

const littleEndianLength = 4;

/**
 * Encodes a frame for the host.
 * @param {string|Buffer} body text, or bytes that are no text
 * @param {{textLength?: boolean, base64?: boolean, percent?: boolean}} options
 */
export function encodeFrame(body, { textLength = false, base64 = false, percent = false } = {}) {
    let bytes = Buffer.from(body);
    if (base64)
        bytes = Buffer.from(bytes.toString('base64'));
    else if (percent)
        bytes = Buffer.from([...bytes].map(percentEncodedByte).join(''));
    return Buffer.concat([encodeLength(bytes.length, textLength), bytes]);
}

export function encodeLength(length, textLength = false) {
    if (textLength)
        return Buffer.from(`${length} `);
    const prefix = Buffer.alloc(littleEndianLength);
    prefix.writeUInt32LE(length);
    return prefix;
}

function percentEncodedByte(byte) {
    const character = String.fromCharCode(byte);
    return /[0-9A-Za-z]/.test(character)
        ? character
        : '%' + byte.toString(16).toUpperCase().padStart(2, '0');
}

/** Splits the host's output into frames. Throws on a frame that does not match the options. */
export class FrameReader {
    /** @type {{crlf?: boolean, textLength?: boolean, base64?: boolean, percent?: boolean}} */
    options = {};
    #chunks = [];
    #size = 0;
    #needed = 1;

    push(chunk) {
        this.#chunks.push(chunk);
        this.#size += chunk.length;
    }

    /** The number of bytes received that belong to no complete frame yet. */
    get pending() { return this.#size; }

    /** The text of the next complete frame, undefined while there is none. */
    next() {
        if (this.#size < this.#needed)
            return undefined;
        if (this.#chunks.length > 1)
            this.#chunks = [Buffer.concat(this.#chunks)];
        const [bytes] = this.#chunks;
        const prefix = this.#readLength(bytes);
        if (!prefix) {
            this.#needed = this.#size + 1;
            return undefined;
        }
        const end = prefix.size + prefix.length;
        const total = end + (this.options.crlf ? 2 : 0);
        if (this.#size < total) {
            this.#needed = total;
            return undefined;
        }
        if (this.options.crlf && bytes.toString('latin1', end, total) !== '\r\n')
            throw new Error('no line break after a frame that should have one');
        this.#chunks = [bytes.subarray(total)];
        this.#size -= total;
        this.#needed = 1;
        return this.#decode(bytes.subarray(prefix.size, end));
    }

    #readLength(bytes) {
        if (!this.options.textLength) {
            return bytes.length < littleEndianLength
                ? undefined
                : { size: littleEndianLength, length: bytes.readUInt32LE() };
        }
        const space = bytes.indexOf(' ');
        const digits = bytes.toString('latin1', 0, space < 0 ? bytes.length : space);
        if (!/^\d{0,10}$/.test(digits) || space === 0)
            throw new Error(`not a length in digits: ${JSON.stringify(digits.slice(0, 40))}`);
        return space < 0 ? undefined : { size: space + 1, length: Number(digits) };
    }

    #decode(body) {
        if (this.options.base64) {
            const text = body.toString('latin1');
            if (!/^(?:[A-Za-z0-9+/]{4})*(?:[A-Za-z0-9+/]{2}==|[A-Za-z0-9+/]{3}=)?$/.test(text))
                throw new Error(`not Base64: ${JSON.stringify(text.slice(0, 80))}`);
            return Buffer.from(text, 'base64').toString('utf8');
        }
        if (this.options.percent) {
            const text = body.toString('latin1');
            if (!/^(?:[0-9A-Za-z]|%[0-9A-F]{2})*$/.test(text))
                throw new Error(`not percent-encoded: ${JSON.stringify(text.slice(0, 80))}`);
            return decodeURIComponent(text);
        }
        return body.toString('utf8');
    }
}
