// SPDX-License-Identifier: MIT
//
// node tileifc.mjs INPUT OUTPUT BYTES
//
// A row of the same building, in one project, until the file has so many bytes. The copies have lines, ids and places
// of their own.
import fs from 'node:fs';

const [input, output, bytes] = process.argv.slice(2);
const apart = 30; // of the file's units of length

const source = fs.readFileSync(input, 'latin1');
const begin = source.indexOf('DATA;') + 'DATA;'.length;
const end = source.lastIndexOf('ENDSEC;');
const lines = source.slice(begin, end);
const highest = lines.match(/^#\d+/gm).reduce((most, id) => Math.max(most, Number(id.slice(1))), 0);
const project = Number(/^#(\d+)= *IFCPROJECT\(/m.exec(lines)[1]);
const withoutProject = lines.replace(/^#\d+= *IFCPROJECT\(.*\n/m, '');

function copy(number) {
    const first = number * (highest + 10);
    const place = first + highest + 1;
    const mark = number.toString(36).padStart(3, '0');
    return withoutProject
        .replace(/#(\d+)/g, (whole, id) => (Number(id) === project ? whole : `#${first + Number(id)}`))
        .replace(/'([0-3])[0-9A-Za-z_$]{3}([0-9A-Za-z_$]{18})'/g, `'$1${mark}$2'`)
        .replace(/IFCLOCALPLACEMENT\(\$,#\d+\)/, `IFCLOCALPLACEMENT($,#${place})`) +
        `#${place}= IFCAXIS2PLACEMENT3D(#${place + 1},$,$);\n` +
        `#${place + 1}= IFCCARTESIANPOINT((${number * apart}.,0.,0.));\n`;
}

const file = fs.openSync(output, 'w');
let written = fs.writeSync(file, source.slice(0, end), null, 'latin1');
for (let number = 1; written < Number(bytes); ++number)
    written += fs.writeSync(file, copy(number), null, 'latin1');
fs.writeSync(file, source.slice(end), null, 'latin1');
fs.closeSync(file);
