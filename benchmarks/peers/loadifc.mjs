// SPDX-License-Identifier: MIT
//
// node loadifc.mjs LIBRARY INPUT
//
// The least that anybody pays who loads a building with this library: every surface is built, looked at and let go.
import fs from 'node:fs';
import { createRequire } from 'node:module';

const [library, input] = process.argv.slice(2);
const ifc = createRequire(import.meta.url)(library);
const api = new ifc.IfcAPI();
await api.Init((name, prefix) => prefix + name, true);
api.SetLogLevel(ifc.LogLevel.LOG_LEVEL_OFF);
const model = api.OpenModel(fs.readFileSync(input), { COORDINATE_TO_ORIGIN: false });
let numbers = 0;
api.StreamAllMeshes(model, (mesh) => {
    for (let i = 0; i < mesh.geometries.size(); ++i) {
        const geometry = api.GetGeometry(model, mesh.geometries.get(i).geometryExpressID);
        numbers += api.GetVertexArray(geometry.GetVertexData(), geometry.GetVertexDataSize()).length;
        numbers += api.GetIndexArray(geometry.GetIndexData(), geometry.GetIndexDataSize()).length;
        geometry.delete();
    }
});
process.exit(numbers > 0 ? 0 : 1);
