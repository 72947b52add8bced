// SPDX-License-Identifier: MIT
//
// node make-assets.mjs OUT.cpp
//
// Writes what the web pages load as a source file of the server: the files of assets/ as they are, and the modules of
// viewer/ with what they import as one script.
import {readFileSync, writeFileSync} from 'node:fs';
import {dirname, join} from 'node:path';
import {fileURLToPath} from 'node:url';
import {build} from 'esbuild';

const here = dirname(fileURLToPath(import.meta.url));
const browsers = ['chrome90', 'edge90', 'firefox90', 'safari15'];
const types = {css: 'text/css; charset=utf-8', js: 'text/javascript; charset=utf-8', svg: 'image/svg+xml'};
const longestLiteral = 8192;

async function bundle(entry) {
    const {outputFiles} = await build({
        entryPoints: [join(here, entry)], bundle: true, minify: true, format: 'iife', target: browsers,
        charset: 'utf8', legalComments: 'inline', write: false, logLevel: 'warning',
    });
    return outputFiles[0].text;
}

// Compilers limit the length of one literal, and join those that follow each other.
function literal(text) {
    if (text.includes(')torvo"')) throw new Error('an asset holds the end of a literal');
    const parts = [];
    for (let from = 0; from < text.length;) {
        let to = Math.min(from + longestLiteral, text.length);
        if (to < text.length && text.codePointAt(to - 1) > 0xffff) to -= 1;
        parts.push(`R"torvo(${text.slice(from, to)})torvo"`);
        from = to;
    }
    return parts.join('\n');
}

// The length is told, since a compiler that counts gives up on a long one.
function entry(name, text) {
    const bytes = `{${literal(text)}, ${Buffer.byteLength(text)}}`;
    return `    Asset{"${name}", "${types[name.split('.').pop()]}", ${bytes}},\n`;
}

const files = ['style.css', 'page.js', 'jobs.js', 'icon.svg'];
let assets = files.map((name) => entry(name, readFileSync(join(here, 'assets', name), 'utf8'))).join('');
assets += entry('viewer.js', await bundle('viewer/main.js'));

writeFileSync(process.argv[2], `// Made by make-assets.mjs.
#include "server/web/assets.h"

#include <array>

namespace server
{

namespace
{

constexpr std::array assets{
${assets}};

} // namespace

std::span<const Asset> Assets()
{
    return assets;
}

} // namespace server
`);
