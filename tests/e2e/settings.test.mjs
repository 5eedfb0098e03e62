// The application's settings in the extension: language and rules, from the first message on.

import { deepStrictEqual, strictEqual } from 'node:assert';
import { test } from 'node:test';
import { Extension, HostFixture } from './support/hostfixture.mjs';
import { HostProcess, until } from '../../tools/drivers/hostprocess.mjs';

const dutch = 'Downloaden met KOV';

test('captions follow the language of the application, and rules apply before the first query', async () => {
    const fixture = new HostFixture();
    try {
        await fixture.serve();
        await fixture.kov('set', 'LocaleName', 'de_AT');
        await fixture.kov('set', 'WbInterceptDownloads', '0');
        const caught = { catchedDownloads: '1', downloads: { item: [{ url: 'http://127.0.0.1/' }] } };
        const start = async () => {
            const extension = new Extension(new HostProcess(fixture.sandbox, { env: { LANG: 'eu_ES', LANGUAGE: 'eu:nl' } }));
            strictEqual((await extension.ask('create_downloads', { create_downloads: caught })).error,
                        'ignoredDueSettings');
            return extension;
        };
        const extension = await start();
        strictEqual((await extension.ask('ui_strings')).strings.dllink, 'Mit KOV herunterladen');
        const captions = () => extension.told.map(message => message.strings.dllink);
        for (const [name, count] of [['fr', 1], ['fr_BE', 1], ['en_AU', 2], ['', 3]]) {
            await fixture.kov('set', 'LocaleName', name);
            await extension.ask('query_settings'); // the application has sent the change before it answers
            await until(() => extension.told.length >= count, `the captions of "${name}"`);
        }
        deepStrictEqual(captions(), ['Télécharger avec KOV', 'Download with KOV', dutch]);
        deepStrictEqual(new Set(extension.told.map(({ id, type, error }) => id + type + error)), new Set(['ui_strings']));
        await extension.end();

        // Without the application, the same from the local store, without launching it.
        await fixture.kov('quit');
        await until(() => fixture.sandbox.running('kov').length === 0, 'the application to end');
        const alone = await start();
        strictEqual((await alone.ask('ui_strings')).strings.dllink, dutch);
        deepStrictEqual(fixture.sandbox.running('kov'), []);
        await alone.end();
    } finally {
        await fixture.remove();
    }
});
