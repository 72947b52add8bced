// SPDX-License-Identifier: MIT
//
// The picture: camera, light, models, and what the pointer and the keys do to them. It is drawn when something has
// changed, never in between.
import {
    Box3, Color, DirectionalLight, HemisphereLight, PerspectiveCamera, Plane, Raycaster, Scene, Sphere, Spherical,
    Vector2, Vector3, WebGLRenderer,
} from 'three';
import {OrbitControls} from 'three/examples/jsm/controls/OrbitControls.js';

const turn = Math.PI / 24;
const nearer = 0.87;
const clickPixels = 4; // a pointer that has moved farther has turned the view
const up = new Vector3(0, 1, 0);

export class View {
    constructor(place, background, {onPick, onLost}) {
        this.renderer = new WebGLRenderer({antialias: true});
        this.canvas = this.renderer.domElement;
        this.scene = new Scene();
        this.scene.background = new Color(background);
        this.camera = new PerspectiveCamera(45, 1, 0.1, 1000);
        this.lightUp();
        this.models = [];
        this.all = new Box3();
        this.onPick = onPick;
        this.prepareCanvas(place);
        this.controls = new OrbitControls(this.camera, this.canvas);
        this.controls.addEventListener('change', () => this.draw());
        this.canvas.addEventListener('keydown', (event) => this.onKey(event));
        this.canvas.addEventListener('webglcontextlost', onLost);
        this.watchClicks();
        new ResizeObserver(() => this.fitSize()).observe(place);
    }

    lightUp() {
        const light = new DirectionalLight(0xffffff, 1.6);
        light.position.set(0.4, 0.8, 1);
        this.camera.add(light);
        this.scene.add(new HemisphereLight(0xffffff, 0x8d8d8d, 1.7), this.camera);
    }

    prepareCanvas(place) {
        this.canvas.tabIndex = 0;
        this.canvas.setAttribute('role', 'img');
        this.canvas.setAttribute('aria-label', '三维模型。方向键旋转，Shift 加方向键平移，加号和减号缩放，Home 适应窗口');
        this.renderer.setPixelRatio(Math.min(window.devicePixelRatio, 2));
        place.append(this.canvas);
        this.place = place;
    }

    fitSize() {
        const {clientWidth, clientHeight} = this.place;
        if (clientWidth === 0 || clientHeight === 0) return;
        this.renderer.setSize(clientWidth, clientHeight);
        this.camera.aspect = clientWidth / clientHeight;
        this.camera.updateProjectionMatrix();
        this.draw();
    }

    draw() {
        if (this.isDue) return;
        this.isDue = true;
        requestAnimationFrame(() => {
            this.isDue = false;
            this.renderer.render(this.scene, this.camera);
            this.canvas.dataset.frames = Number(this.canvas.dataset.frames || 0) + 1;
        });
    }

    add(model) {
        this.models.push(model);
        this.scene.add(...model.meshes);
        model.boxOf(() => true, this.all);
        this.fit(this.all);
    }

    // Cuts away what is below or above.
    cut({low, high}) {
        this.renderer.clippingPlanes = [
            ...(Number.isFinite(low) ? [new Plane(up, -low)] : []),
            ...(Number.isFinite(high) ? [new Plane(up.clone().negate(), high)] : []),
        ];
        this.draw();
    }

    fit(box) {
        if (box.isEmpty()) return;
        const {center, radius} = box.getBoundingSphere(new Sphere());
        const narrow = Math.min(1, this.camera.aspect);
        const distance = Math.max(radius, 0.01) / Math.sin(this.camera.fov * Math.PI / 360) / narrow;
        let direction = this.camera.position.clone().sub(this.controls.target);
        if (!this.isPlaced) direction = new Vector3(1, 0.8, 1.2);
        this.isPlaced = true;
        const whole = this.all.getBoundingSphere(new Sphere());
        this.camera.position.copy(center).addScaledVector(direction.normalize(), distance);
        // Whatever is looked at, nothing of the rest is cut off.
        this.camera.near = Math.min(radius, whole.radius) / 100;
        this.camera.far = (distance + whole.radius + whole.center.distanceTo(center)) * 10;
        this.camera.updateProjectionMatrix();
        this.controls.target.copy(center);
        this.controls.maxDistance = this.camera.far / 2;
        this.controls.update();
        this.draw();
    }

    watchClicks() {
        let start = null;
        this.canvas.addEventListener('pointerdown', (event) => {
            start = event.isPrimary && event.button === 0 ? [event.clientX, event.clientY] : null;
        });
        this.canvas.addEventListener('pointerup', (event) => {
            if (!start || !event.isPrimary) return;
            const far = Math.hypot(event.clientX - start[0], event.clientY - start[1]);
            start = null;
            if (far <= clickPixels) this.pick(event);
        });
    }

    pick({clientX, clientY}) {
        const frame = this.canvas.getBoundingClientRect();
        const spot = new Vector2((clientX - frame.left) / frame.width * 2 - 1, 1 - (clientY - frame.top) / frame.height * 2);
        const ray = new Raycaster();
        ray.setFromCamera(spot, this.camera);
        // A line has no width: whoever clicks beside it means it.
        ray.params.Line.threshold = this.camera.position.distanceTo(this.controls.target) / 200;
        const isKept = ({point}) => this.renderer.clippingPlanes.every((plane) => plane.distanceToPoint(point) >= 0);
        const hit = ray.intersectObjects(this.models.flatMap(({meshes}) => meshes), false).find(isKept);
        const model = hit ? this.models.findIndex(({meshes}) => meshes.includes(hit.object)) : -1;
        this.onPick(model, hit ? this.models[model].nodeAt(hit) : -1);
    }

    onKey(event) {
        if (event.ctrlKey || event.altKey || event.metaKey) return;
        const [x, y] = {ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1]}[event.key] ?? [];
        if (x !== undefined) {
            if (event.shiftKey) this.shift(x, y);
            else this.rotate(x, y);
        } else if (event.key === '+' || event.key === '=') this.approach(nearer);
        else if (event.key === '-') this.approach(1 / nearer);
        else if (event.key === 'Home') this.fit(this.all);
        else if (event.key === 'Escape') this.onPick(-1, -1);
        else return;
        event.preventDefault();
    }

    rotate(x, y) {
        const arm = new Spherical().setFromVector3(this.camera.position.clone().sub(this.controls.target));
        arm.theta += x * turn;
        arm.phi += y * turn;
        this.standAt(arm.makeSafe());
    }

    approach(factor) {
        const arm = new Spherical().setFromVector3(this.camera.position.clone().sub(this.controls.target));
        arm.radius *= factor;
        this.standAt(arm);
    }

    standAt(arm) {
        this.camera.position.setFromSpherical(arm).add(this.controls.target);
        this.controls.update();
        this.draw();
    }

    shift(x, y) {
        const step = this.camera.position.distanceTo(this.controls.target) / 20;
        const move = new Vector3(x * step, -y * step, 0).applyQuaternion(this.camera.quaternion);
        this.camera.position.add(move);
        this.controls.target.add(move);
        this.controls.update();
        this.draw();
    }
}
