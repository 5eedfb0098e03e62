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
        files: ['tests/**/*.mjs', 'tools/**/*.mjs'],
        languageOptions: { globals: globals.node },
        rules,
    },
    {
        files: ['extension/**/*.js'],
        languageOptions: { globals: { ...globals.browser, ...globals.webextensions } },
        rules,
    },
];
