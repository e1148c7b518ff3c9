void main(){
	setglobalvar("fell", getglobalvar("fell") + 1);
}
