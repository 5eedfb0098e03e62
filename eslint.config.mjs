import js from '@eslint/js';
import globals from 'globals';

const rules = {
    ...js.configs.recommended.rules,
    'eqeqeq': 'error',
    'no-constant-binary-expression': 'error',
    'no-implicit-globals': 'error',
    'no-shadow': 'error',
    'no-unused-vars': ['error', { argsIgnorePattern: '^_' }],
    'no-var': 'error',
    'prefer-const': 'error',
};

export default [
    { ignores: ['**/node_modules/'] },
    {
        files: ['{tests,tools,benchmarks}/**/*.mjs'],
        // Some functions are handed to a browser and run there.
        languageOptions: { globals: { ...globals.node, chrome: 'readonly', document: 'readonly', location: 'readonly' } },
        rules,
    },
    {
        files: ['{extension,benchmarks/floorextension}/**/*.js'],
        languageOptions: { globals: { ...globals.browser, ...globals.webextensions } },
        rules,
    },
];
