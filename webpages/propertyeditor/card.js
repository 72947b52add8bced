// SPDX-License-Identifier: MIT
'use strict';

// The project card of the program, reached over the channel that the program puts into the page. It holds the text that
// is edited here, and shows another one as soon as another project is looked at.
class Card {
    constructor(object) {
        this.object = object;
    }

    // Rejects with words for the user when the page is shown by something else than the program.
    static connect() {
        return new Promise((resolve, reject) => {
            if (typeof QWebChannel !== 'function' || !window.qt || !window.qt.webChannelTransport) {
                reject(new Error('这个页面要从工程信息卡上的“属性编辑”按钮打开，不能单独使用。'));
                return;
            }
            new QWebChannel(window.qt.webChannelTransport, ({objects}) => {
                if (objects.propObject) resolve(new Card(objects.propObject));
                else reject(new Error('程序没有提供属性模板，请重新启动程序。'));
            });
        });
    }

    read() {
        return new Promise((resolve) => this.object.getProp(resolve));
    }

    write(text) {
        return new Promise((resolve) => this.object.setProp(text, resolve));
    }
}
