void main(){
	setglobalvar("wall" + getlocalvar("height"), getlocalvar("plane"));
}
