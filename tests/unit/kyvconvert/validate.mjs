// SPDX-License-Identifier: MIT
//
// node validate.mjs PACKAGE-ROOT FILE: prints what the Khronos validator finds wrong in a model file, a line each.
import fs from 'node:fs';
import path from 'node:path';
import { createRequire } from 'node:module';

const [root, file] = process.argv.slice(2);
const validator = createRequire(path.join(root, 'package.json'))('gltf-validator');
const report = await validator.validateBytes(new Uint8Array(fs.readFileSync(file)), { maxIssues: 0 });
const wrong = report.issues.messages.filter((issue) => issue.severity <= 1);
for (const issue of wrong)
    console.log(`${issue.code} ${issue.pointer ?? ''} ${issue.message}`);
console.log(`${report.issues.numErrors} errors, ${report.info.totalTriangleCount} triangles, ${report.info.drawCallCount} primitives`);
