// A virtual screen (Xvfb) for a browser with windows, menus and dialogs, and keyboard input for it (xdotool).

import { execFileSync, spawn } from 'node:child_process';

export class Screen {
    static async start() {
        const server = spawn('Xvfb', ['-displayfd', '3', '-screen', '0', '1280x1024x24', '-nolisten', 'tcp'],
                             { stdio: ['ignore', 'ignore', 'ignore', 'pipe'] });
        const number = await new Promise((resolve, reject) => {
            server.on('error', reject);
            server.on('exit', code => reject(new Error(`Xvfb ended (${code})`)));
            server.stdio[3].setEncoding('utf8').once('data', resolve);
        });
        return new Screen(server, `:${number.trim()}`);
    }

    constructor(server, display) {
        this.server = server;
        this.display = display;
    }

    /** Sends keys ("Return", "ctrl+s") to the focused window. */
    press(...keys) { this.#do('key', '--delay', '60', ...keys); }

    click(x, y) { this.#do('mousemove', '--sync', String(x), String(y), 'click', '1'); }

    /** The id of a visible window by a part of its title; undefined when there is none. */
    window(title) { return this.#do('search', '--onlyvisible', '--name', title).split('\n').find(Boolean); }

    /** Focuses a window; there is no window manager to do it. */
    focus(id) { this.#do('windowfocus', '--sync', id); }

    stop() { this.server.kill(); }

    #do(...args) {
        try {
            return execFileSync('xdotool', args, { env: { ...process.env, DISPLAY: this.display }, encoding: 'utf8', stdio: 'pipe' });
        } catch (error) {
            if (args[0] === 'search') // it found none
                return '';
            throw error;
        }
    }
}
